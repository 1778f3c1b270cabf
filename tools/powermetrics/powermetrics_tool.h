// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace pallimo::tools::powermetrics {

/// What the tool needs of its process, handed in so that its tests neither sleep nor print.
struct ToolSurroundings {
  /// An entry of the environment; nothing when it is absent.
  std::function<std::optional<std::string>(const char* name)> environment;
  /// The wall clock, seconds since 1970.
  std::function<double()> now;
  /// Waits; false as soon as nobody reads standard output any more.
  std::function<bool(std::chrono::duration<double>)> wait;
  /// Writes all of it to standard output; false when nobody reads it.
  std::function<bool(const base::Bytes&)> write;
  /// Writes one line, given without its line end, to standard error.
  std::function<void(std::string_view)> writeError;
};

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kUsageFailure = 64;  // EX_USAGE of the BSD systems

/// Stands where the system's powermetrics stands on a Mac: checks the command line, reads what is
/// simulated (the file and the request's number are named by the environment, see
/// simulation_file.h), lets the sampling period pass at the simulation's speed and prints the
/// document; or says what it is (`--help`). Returns the exit status. A failure is one line on
/// standard error; only a recorded step without a document, and a reader that has gone, fail
/// without a word. Never throws what the surroundings do not throw.
int runPowermetrics(const std::vector<std::string>& arguments,
                    const ToolSurroundings& surroundings);

}  // namespace pallimo::tools::powermetrics
