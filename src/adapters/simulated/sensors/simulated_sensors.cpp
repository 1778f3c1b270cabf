// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_sensors.h"

#include <cstdint>
#include <utility>

#include "adapters/simulated/sensors/following_helper_connector.h"

namespace pallimo::adapters::simulated {

SimulatedSensors::SimulatedSensors(Parts parts, const ports::Clock& clock)
    : now_(std::make_shared<CurrentStep>(std::move(parts.steps), clock, parts.startTime)),
      smcDevice_(std::move(parts.smc), *now_),
      hidSensors_(*now_),
      accelerators_(*now_),
      processorTicks_(*now_),
      programLauncher_(std::move(parts.reports)) {}

std::unique_ptr<ports::HelperConnector> SimulatedSensors::follow(ports::HelperConnector& inner) {
  return std::make_unique<FollowingHelperConnector>(
      inner, [now = now_](std::uint64_t request) { now->moveTo(request); });
}

}  // namespace pallimo::adapters::simulated
