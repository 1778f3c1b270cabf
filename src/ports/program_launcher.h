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
  /// exit status; nothing when it can't be started.
  virtual std::optional<base::Bytes> run(const std::string& path,
                                         const std::vector<std::string>& arguments) = 0;
};

}  // namespace pallimo::ports
