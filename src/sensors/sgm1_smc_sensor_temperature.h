// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <map>
#include <string>

#include "ports/smc_device.h"
#include "ports/system_controls.h"
#include "sensors/sgm1_smc_sensors.h"
#include "sensors/temperature_readings.h"

namespace pallimo::sensors {

/// The SMC's temperature keys: which of them this machine has, and what they read.
///
/// Keys are found once, when the object is made; a key that fails then is never read later. The
/// passes run one after the other, on one thread at a time; each opens and closes the connection.
class SGM1SMCSensorTemperature : public SGM1SMCSensors {
 public:
  /// Both outlive the object. Finds the keys.
  SGM1SMCSensorTemperature(ports::SmcDevice& device, const ports::SystemControls& controls);

  /// Type names by key name: the machine's keys that stand in the table of CPU or GPU keys.
  const std::map<std::string, std::string, std::less<>>& availableTemperatureKeys() const {
    return availableTemperatureKeys_;
  }

  /// The CPU's keys, °C; only values above 0. On chips of the M2 and M4 families low values are
  /// taken to be invalid: below 20 °C the key "Te05" stands in for them, and even the 0 that it
  /// counts as when it can't be read.
  TemperatureReadings readCPUTemperatures();
  /// The GPU's keys, °C; only values above 0.
  TemperatureReadings readGPUTemperatures();

 private:
  void discoverTemperatureKeys();

  const ports::SystemControls& controls_;
  std::map<std::string, std::string, std::less<>> availableTemperatureKeys_;
};

}  // namespace pallimo::sensors
