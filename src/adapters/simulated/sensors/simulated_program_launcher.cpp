// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_program_launcher.h"

#include <utility>

namespace pallimo::adapters::simulated {

SimulatedProgramLauncher::SimulatedProgramLauncher(Reports reports)
    : reports_(std::move(reports)) {}

std::optional<base::Bytes> SimulatedProgramLauncher::run(
    const std::string& path, const std::vector<std::string>& arguments) {
  const bool isReport =
      path == "/usr/sbin/system_profiler" && arguments.size() == 2 && arguments.front() == "-xml";
  return isReport ? reports_(arguments.back()) : std::nullopt;
}

}  // namespace pallimo::adapters::simulated
