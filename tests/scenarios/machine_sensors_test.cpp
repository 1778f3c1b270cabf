// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "adapters/simulated/machines/machines.h"
#include "sensors/sgm1_sensor_temperature.h"
#include "sensors/temperature_tables.h"

namespace pallimo::scenarios {
namespace {

using adapters::simulated::builtinMachines;
using adapters::simulated::MachineDescription;
using adapters::simulated::TemperatureSource;
using sensors::SGM1SensorTemperature;

/// What the built-in machines are made of, seen by the tables that the app reads them with.
class MachineSensors : public testing::TestWithParam<std::size_t> {
 protected:
  const MachineDescription& machine() const { return builtinMachines()[GetParam()]; }
};

/// A name that is in no table would be left out in silence.
TEST_P(MachineSensors, EachCountsForItsPartOfTheChip) {
  for (const auto& cluster : machine().clusters) {
    for (const std::string& name : cluster.sensors.smc) {
      EXPECT_TRUE(sensors::isCPUTemperatureKey(name)) << name;
    }
    for (const std::string& name : cluster.sensors.hid) {
      EXPECT_TRUE(sensors::isHIDCPUSensor(name)) << name;
    }
  }
  for (const std::string& name : machine().gpu.sensors.smc) {
    EXPECT_TRUE(sensors::isGPUTemperatureKey(name)) << name;
  }
  for (const std::string& name : machine().gpu.sensors.hid) {
    EXPECT_TRUE(sensors::isHIDGPUSensor(name)) << name;
  }
}

TEST_P(MachineSensors, AnswerWhereTheAppAsks) {
  const bool isOnSMC = machine().temperatures == TemperatureSource::smc;
  EXPECT_EQ(SGM1SensorTemperature::chooseSensorType(machine().model),
            isOnSMC ? SGM1SensorTemperature::kSMC : SGM1SensorTemperature::kPMU);
}

INSTANTIATE_TEST_SUITE_P(All, MachineSensors,
                         testing::Range<std::size_t>(0, builtinMachines().size()));

}  // namespace
}  // namespace pallimo::scenarios
