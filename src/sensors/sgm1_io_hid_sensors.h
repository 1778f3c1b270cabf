// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "ports/hid_sensors.h"
#include "sensors/temperature_readings.h"

namespace pallimo::sensors {

/// The temperature sensors of the power-management unit. Stateless: every read makes a client of
/// its own and reads all sensors afresh. Any thread.
class SGM1IOHIDSensors {
 public:
  /// `hid` outlives the object.
  explicit SGM1IOHIDSensors(ports::HidSensors& hid) : hid_(hid) {}

  /// Every service of that page and usage, by the four characters of its "LocationID"; one without
  /// such an identifier (or one not above 0) is left out, of two with the same the later one
  /// counts. A service without an event of the type reads -1. No services: empty. When the system
  /// makes no client, the program stops.
  TemperatureReadings readHIDTemperatures(std::int32_t page, std::int32_t usage,
                                          std::int32_t type) const;
  /// The CPU's sensors, °C, -1 for one without an event.
  TemperatureReadings readHIDCPUTemperatures() const;
  /// The GPU's sensors, °C, -1 for one without an event.
  TemperatureReadings readHIDGPUTemperatures() const;

 private:
  ports::HidSensors& hid_;
};

}  // namespace pallimo::sensors
