// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"

namespace pallimo::ports {

/// Runs other programs. Any thread; blocks until the program has closed its output.
class ProgramLauncher {
 public:
  virtual ~ProgramLauncher() = default;

  /// Starts the program at an absolute path and reads its standard output to the end, whatever its
  /// exit status; of a pipe that fails midway, what came so far. Nothing when the program can't be
  /// started. It gets no input, and what it writes to standard error goes nowhere. The adapter
  /// reaps it; no caller waits for its exit.
  virtual std::optional<base::Bytes> run(const std::string& path,
                                         const std::vector<std::string>& arguments) = 0;
};

}  // namespace pallimo::ports
