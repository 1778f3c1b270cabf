// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/bytes.h"

namespace pallimo::ports {

/// A program to run, without a shell.
struct ChildCommand {
  std::string path;                       ///< absolute
  std::vector<std::string> arguments;     ///< without the program's own name
  std::vector<std::string> environment;   ///< "NAME=value", the whole of it
  std::size_t outputLimit = 0;            ///< bytes of standard output; more ends the run
  std::chrono::milliseconds timeLimit{};  ///< a run that takes longer is ended
};

/// How a run ended.
struct ChildOutcome {
  enum class End {
    exited,         ///< by itself; `code` is its status
    signalled,      ///< by a signal that was not ours; `code` is its number
    timedOut,       ///< we ended it: time limit
    tooMuchOutput,  ///< we ended it: output limit
    notStarted,     ///< it could not be started; `code` is the errno value
  };
  End end = End::exited;
  int code = 0;
  base::Bytes output;  ///< what it printed to standard output, at most the limit
};

/// A run under way. Destroying it ends the program and all it started, at once; `finished` is then
/// never called.
class ChildProcess {
 public:
  virtual ~ChildProcess() = default;
};

/// Runs programs side by side. Everything is called on the helper's one thread.
class ChildProcesses {
 public:
  virtual ~ChildProcesses() = default;

  /// Starts the program with standard input from nowhere, standard output into a pipe and no
  /// other descriptor. Never blocks, never calls `finished` before it returns; a program that
  /// can't be started finishes with notStarted.
  [[nodiscard]] virtual std::unique_ptr<ChildProcess> start(
      const ChildCommand& command, std::function<void(ChildOutcome)> finished) = 0;
};

}  // namespace pallimo::ports
