// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_sensor_temperature.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "sensors/sg_system_info.h"

namespace pallimo::sensors {

namespace {

constexpr std::array<std::string_view, 5> kModelsOnHID = {"MacBookPro17,1", "MacBookAir10,1",
                                                          "Macmini9,1", "iMac21,1", "iMac21,2"};

}  // namespace

SGM1SensorTemperature::SGM1SensorTemperature(const Services& services)
    : hid_(services.hid),
      machineModel_(SGSystemInfo(services.controls).hardwareModel()),
      sensorType_(chooseSensorType(machineModel_)) {
  if (sensorType_ == kSMC) smcTmp_.emplace(services.smc, services.controls);
}

TemperatureReadings SGM1SensorTemperature::readCPUTemperatures() {
  return smcTmp_ ? smcTmp_->readCPUTemperatures() : hid_.readHIDCPUTemperatures();
}

TemperatureReadings SGM1SensorTemperature::readGPUTemperatures() {
  return smcTmp_ ? smcTmp_->readGPUTemperatures() : hid_.readHIDGPUTemperatures();
}

std::string_view SGM1SensorTemperature::chooseSensorType(std::string_view machineModel) {
  const bool isOnHID =
      std::find(kModelsOnHID.begin(), kModelsOnHID.end(), machineModel) != kModelsOnHID.end();
  return isOnHID ? kPMU : kSMC;
}

}  // namespace pallimo::sensors
