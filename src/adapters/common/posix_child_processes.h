// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>

#include "adapters/common/poll_loop.h"
#include "ports/child_processes.h"

namespace pallimo::adapters::common {

/// Programs as processes of this system. The loop's thread only.
///
/// The end of a program is an event of the loop, not a signal handler and not a question asked
/// again and again; between events nothing wakes up. A run ends when its program has ended: what
/// that has printed until then is its output, and what it has started and left behind is ended too.
///
/// A program whose run was ended (limit, or a destroyed ChildProcess) is killed at once and waited
/// for by the loop, later, so that nothing blocks. SIGCHLD must not be ignored in this process.
class PosixChildProcesses final : public ports::ChildProcesses {
 public:
  /// The loop must outlive this object and the runs it starts.
  explicit PosixChildProcesses(PollLoop& loop);
  /// Waits for the programs that were killed, one second at most. Runs must be destroyed before.
  ~PosixChildProcesses() override;
  PosixChildProcesses(const PosixChildProcesses&) = delete;
  PosixChildProcesses& operator=(const PosixChildProcesses&) = delete;

  [[nodiscard]] std::unique_ptr<ports::ChildProcess> start(
      const ports::ChildCommand& command,
      std::function<void(ports::ChildOutcome)> finished) override;

 private:
  class Run;
  class Undertaker;

  PollLoop& loop_;
  const std::shared_ptr<Undertaker> undertaker_;
};

}  // namespace pallimo::adapters::common
