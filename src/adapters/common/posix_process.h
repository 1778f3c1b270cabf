// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <sys/types.h>

#include <optional>
#include <utility>
#include <variant>

#include "adapters/common/descriptor.h"
#include "ports/child_processes.h"

namespace pallimo::adapters::common {

/// A program that was started and has not been waited for. Until reap() has succeeded its process
/// number can't belong to anybody else, so that signals never meet a stranger. Whoever holds one
/// must reap it; destroying it alone leaves a zombie. Move-only, no locking.
class PosixProcess {
 public:
  struct Started;

  /// Starts the program in a process group of its own, with the default signal actions, no signal
  /// blocked, /dev/null as standard input and error, and no descriptor but those and the pipe.
  /// Returns the errno value when that fails. SIGCHLD must not be ignored in this process, or the
  /// system throws the exit status away.
  static std::variant<Started, int> start(const ports::ChildCommand& command);

  /// Becomes readable when the program has ended.
  int exitDescriptor() const { return exit_.get(); }

  /// Ends the program and all it started, as far as they stayed in its group.
  void killGroup() const;

  /// The wait status if the program has ended; afterwards nothing is left of it in the system.
  std::optional<int> reap();

 private:
  PosixProcess(pid_t number, Descriptor exit) : number_(number), exit_(std::move(exit)) {}

  pid_t number_;
  Descriptor exit_;
};

struct PosixProcess::Started {
  PosixProcess process;
  Descriptor output;  ///< reads the program's standard output, without blocking
};

}  // namespace pallimo::adapters::common
