// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/powermetrics_command.h"

#include <cmath>
#include <utility>

namespace pallimo::helper {

namespace {

std::string samplers(bool includeGPU, bool hasAnePower) {
  std::string names = "cpu_power";
  if (includeGPU) names += ",gpu_power";
  if (hasAnePower) names += ",ane_power";
  return names;
}

}  // namespace

std::optional<ports::ChildCommand> powermetricsCommand(const PowermetricsTool& tool,
                                                       double msSampling, bool includeGPU,
                                                       std::uint64_t request) {
  // Written so that not-a-number is refused, too.
  if (!(msSampling >= kShortestPeriod && msSampling <= kLongestPeriod)) return std::nullopt;
  const std::chrono::milliseconds period(std::llround(msSampling));
  ports::ChildCommand command;
  command.path = tool.path;
  command.arguments = {"-n", "1",     "-i",         std::to_string(period.count()),
                       "-f", "plist", "--samplers", samplers(includeGPU, tool.hasAnePower)};
  command.environment = {"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};
  if (tool.environment) {
    for (auto& entry : tool.environment(request)) command.environment.push_back(std::move(entry));
  }
  command.outputLimit = kLongestDocument;
  command.timeLimit = period + kLongestDelay;
  return command;
}

}  // namespace pallimo::helper
