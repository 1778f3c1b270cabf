// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <map>
#include <string>

namespace pallimo::sensors {

/// One pass over the sensors: °C by the sensor's four-character name. The order means nothing.
using TemperatureReadings = std::map<std::string, double, std::less<>>;

}  // namespace pallimo::sensors
