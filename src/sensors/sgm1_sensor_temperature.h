// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ports/hid_sensors.h"
#include "ports/smc_device.h"
#include "ports/system_controls.h"
#include "sensors/sgm1_io_hid_sensors.h"
#include "sensors/sgm1_smc_sensor_temperature.h"
#include "sensors/temperature_readings.h"

namespace pallimo::sensors {

/// Where this machine's temperatures come from, chosen once from its model: the first machines with
/// an M1 publish them through the HID event system, all others through the SMC. Reads: one thread
/// at a time.
class SGM1SensorTemperature {
 public:
  /// All of it outlives the object.
  struct Services {
    const ports::SystemControls& controls;
    ports::SmcDevice& smc;
    ports::HidSensors& hid;
  };

  static constexpr std::string_view kSMC = "SMC";
  static constexpr std::string_view kPMU = "PMU";

  /// kPMU for the first machines with an M1, kSMC for all others.
  static std::string_view chooseSensorType(std::string_view machineModel);

  /// Reads the machine's model, chooses, and on the SMC finds the keys.
  explicit SGM1SensorTemperature(const Services& services);

  /// "MacBookAir10,1"
  const std::string& machineModel() const { return machineModel_; }
  /// kPMU for the HID event system, kSMC for the SMC.
  const std::string& sensorType() const { return sensorType_; }
  /// The SMC's reader; nullptr on the HID source.
  const SGM1SMCSensorTemperature* smcTmp() const { return smcTmp_ ? &*smcTmp_ : nullptr; }

  /// °C. On the HID source a sensor without an event reads -1, and each call reads all sensors.
  TemperatureReadings readCPUTemperatures();
  TemperatureReadings readGPUTemperatures();

 private:
  std::optional<SGM1SMCSensorTemperature> smcTmp_;
  const SGM1IOHIDSensors hid_;
  const std::string machineModel_;
  const std::string sensorType_;
};

}  // namespace pallimo::sensors
