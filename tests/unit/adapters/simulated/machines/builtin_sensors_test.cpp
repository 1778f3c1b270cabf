// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_sensors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "adapters/simulated/machines/builtin_smc.h"
#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/recordings/smc_value.h"
#include "unit/adapters/simulated/sensors/sampled_machine.h"

namespace pallimo::adapters::simulated {
namespace {

using tests::floatOf;

const MachineDescription& machineNamed(const char* name) { return *findMachine(name); }

const SmcKey* find(const RecordedSmc& smc, const std::string& name) {
  const auto found = std::find_if(smc.keys.begin(), smc.keys.end(),
                                  [&name](const SmcKey& key) { return key.key == name; });
  return found == smc.keys.end() ? nullptr : &*found;
}

std::vector<std::string> temperatureKeysOf(const MachineDescription& machine) {
  std::vector<std::string> keys = machine.gpu.sensors.smc;
  for (const auto& cluster : machine.clusters) {
    keys.insert(keys.end(), cluster.sensors.smc.begin(), cluster.sensors.smc.end());
  }
  return keys;
}

/// "Tp0i" of 0x54703069.
std::string nameOf(const HidReading& reading) {
  std::string name;
  for (int shift = 24; shift >= 0; shift -= 8) {
    name += static_cast<char>(*reading.locationID >> shift & 0xFF);
  }
  return name;
}

class EveryMachinesSmc : public ::testing::TestWithParam<std::size_t> {
 protected:
  const MachineDescription& machine() const { return builtinMachines()[GetParam()]; }
  const RecordedSmc smc_ = smcOf(machine());
};

TEST_P(EveryMachinesSmc, CanBeOpened) { EXPECT_TRUE(smc_.isAvailable); }

TEST_P(EveryMachinesSmc, HasAboutThreeHundredKeys) {
  EXPECT_GT(smc_.keys.size(), 260u);
  EXPECT_LT(smc_.keys.size(), 340u);
}

TEST_P(EveryMachinesSmc, CountsItsKeysUnderAKeyOfItsOwn) {
  EXPECT_EQ(smc_.keyCount, smc_.keys.size());
  ASSERT_NE(find(smc_, "#KEY"), nullptr);
  EXPECT_EQ(find(smc_, "#KEY")->bytes, smcValue("ui32", static_cast<double>(smc_.keys.size())));
}

TEST_P(EveryMachinesSmc, ListsItsKeysInOrderAndNoneTwice) {
  for (std::size_t i = 1; i < smc_.keys.size(); ++i) {
    EXPECT_LT(smc_.keys[i - 1].key, smc_.keys[i].key);
  }
}

TEST_P(EveryMachinesSmc, EveryKeyHasFourCharactersATypeASizeAndAValue) {
  for (const SmcKey& key : smc_.keys) {
    EXPECT_EQ(key.key.size(), 4u) << key.key;
    EXPECT_EQ(key.type.size(), 4u) << key.key;
    EXPECT_GT(key.size, 0u) << key.key;
    EXPECT_EQ(key.size, smcSize(key.type)) << key.key;
    EXPECT_TRUE(key.bytes.has_value()) << key.key;
  }
}

TEST_P(EveryMachinesSmc, HasTheChipsSensorsAsFloats) {
  for (const std::string& name : temperatureKeysOf(machine())) {
    ASSERT_NE(find(smc_, name), nullptr) << name;
    EXPECT_EQ(find(smc_, name)->type, "flt ");
    EXPECT_FLOAT_EQ(floatOf(find(smc_, name)->bytes), 34);
  }
}

TEST_P(EveryMachinesSmc, HasTemperaturesThatAreNotTheChips) {
  for (const char* name : {"TaLP", "TC00", "tP00", "Tm00"}) {
    EXPECT_NE(find(smc_, name), nullptr) << name;
  }
}

TEST_P(EveryMachinesSmc, HasValuesOfSeveralTypes) {
  std::set<std::string> types;
  for (const SmcKey& key : smc_.keys) types.insert(key.type);
  EXPECT_EQ(types, (std::set<std::string>{"flt ", "fpe2", "ioft", "ui16", "ui32", "ui8 "}));
}

TEST_P(EveryMachinesSmc, HasTheFansOfTheMachine) {
  EXPECT_EQ(find(smc_, "FNum")->bytes, smcValue("ui8 ", machine().fans));
  EXPECT_EQ(find(smc_, "F0Ac") != nullptr, machine().fans > 0);
  EXPECT_EQ(find(smc_, "F1Ac") != nullptr, machine().fans > 1);
}

TEST_P(EveryMachinesSmc, AMomentChangesTheChipsSensorsAlone) {
  std::set<std::string> changed;
  for (const auto& [key, value] : BuiltinSensors(machine(), 1).stepAt(5).smc) changed.insert(key);
  const auto keys = temperatureKeysOf(machine());
  EXPECT_EQ(changed, std::set<std::string>(keys.begin(), keys.end()));
}

INSTANTIATE_TEST_SUITE_P(All, EveryMachinesSmc,
                         ::testing::Range<std::size_t>(0, builtinMachines().size()));

TEST(SmcOf, ALargeChipHasAboutFortySensors) {
  for (const char* name : {"Mac Studio M2 Ultra", "MacBook Pro M4 Max"}) {
    EXPECT_NEAR(static_cast<double>(temperatureKeysOf(machineNamed(name)).size()), 40, 5) << name;
  }
}

TEST(SmcOf, MachinesWhoseSleepingCoresReadLowHaveASensorThatNeverDoes) {
  for (const MachineDescription& machine : builtinMachines()) {
    EXPECT_EQ(find(smcOf(machine), "Te05") != nullptr, machine.sleepingCoresReadLow);
  }
  EXPECT_TRUE(machineNamed("Mac mini M4").sleepingCoresReadLow);
  EXPECT_TRUE(machineNamed("MacBook Pro M2 Pro").sleepingCoresReadLow);
  EXPECT_FALSE(machineNamed("MacBook Pro M1 Pro").sleepingCoresReadLow);
}

/// How many of the machine's readings over two minutes are below 20 degrees, and how many are not.
std::pair<int, int> lowAndOtherReadings(const MachineDescription& machine) {
  BuiltinSensors sensors(machine, 1);
  std::pair<int, int> counts;
  for (int second = 0; second < 120; ++second) {
    for (const auto& [key, value] : sensors.stepAt(second).smc) {
      ++(floatOf(value) < 20 ? counts.first : counts.second);
    }
  }
  return counts;
}

TEST(BuiltinSensors, SomeSensorsOfSleepingCoresReadLow) {
  const auto [low, others] = lowAndOtherReadings(machineNamed("MacBook Pro M4 Max"));
  EXPECT_GT(low, 100);
  EXPECT_GT(others, low);
}

TEST(BuiltinSensors, OfOtherChipsNoneReadsLow) {
  EXPECT_EQ(lowAndOtherReadings(machineNamed("MacBook Pro M1 Pro")).first, 0);
}

TEST(BuiltinSensors, LowReadingsAreStillAboveNought) {
  BuiltinSensors sensors(machineNamed("MacBook Pro M2 Pro"), 1);
  for (int second = 0; second < 120; ++second) {
    for (const auto& [key, value] : sensors.stepAt(second).smc) EXPECT_GT(floatOf(value), 3);
  }
}

TEST(BuiltinSensors, EverySensorDiffersALittle) {
  const RecordingStep step = BuiltinSensors(machineNamed("MacBook Pro M1 Pro"), 1).stepAt(20);
  std::set<float> gpu;
  for (const std::string& key : machineNamed("MacBook Pro M1 Pro").gpu.sensors.smc) {
    gpu.insert(floatOf(step.smc.at(key)));
  }
  EXPECT_EQ(gpu.size(), machineNamed("MacBook Pro M1 Pro").gpu.sensors.smc.size());
  EXPECT_LT(*gpu.rbegin() - *gpu.begin(), 5);
}

TEST(BuiltinSensors, AMacBookAirPublishesItsChipsSensorsOverHid) {
  const auto hid = BuiltinSensors(machineNamed("MacBook Air M1"), 1).stepAt(1).hid;
  ASSERT_TRUE(hid);
  std::vector<std::string> names;
  for (const HidReading& reading : *hid) names.push_back(nameOf(reading));
  EXPECT_EQ(names, (std::vector<std::string>{"Te0i", "Te1i", "Te2i", "Te3i", "Tp0i", "Tp1i", "Tp2i",
                                             "Tp3i", "Tp4i", "Tp5i", "Tp6i", "Tp7i", "Tg0i", "Tg1i",
                                             "Tg2i", "Tg3i", "Tp9i", "Tb0i", "Ts0i", "Tn0i"}));
}

TEST(BuiltinSensors, OneHidSensorHasNoEvent) {
  const auto hid = BuiltinSensors(machineNamed("MacBook Air M1"), 1).stepAt(1).hid;
  ASSERT_TRUE(hid);
  for (const HidReading& reading : *hid) {
    EXPECT_EQ(reading.value.has_value(), nameOf(reading) != "Tn0i") << nameOf(reading);
  }
}

TEST(BuiltinSensors, HaveOneAcceleratorOfApples) {
  const auto accelerators = BuiltinSensors(machineNamed("Mac mini M4"), 1).stepAt(1).accelerators;
  ASSERT_TRUE(accelerators);
  ASSERT_EQ(accelerators->size(), 1u);
  const RecordedAccelerator& gpu = accelerators->front();
  EXPECT_EQ(*gpu.vendorId->data(), (base::Bytes{0x6B, 0x10, 0, 0}));
  EXPECT_EQ(*gpu.model->text(), "Apple M4");
  EXPECT_EQ(gpu.readFailures, 0u);
}

TEST(BuiltinSensors, TheAcceleratorsUtilisationIsAWholePercentageOfTheGpusBusyTime) {
  const MachineDescription& machine = machineNamed("Mac mini M4");
  BuiltinSensors sensors(machine, 1);
  for (int second = 0; second < 60; ++second) {
    const auto step = sensors.stepAt(second);
    const auto& statistics = *step.accelerators->front().performanceStatistics;
    for (const char* key :
         {"Device Utilization %", "Renderer Utilization %", "Tiler Utilization %"}) {
      std::int64_t percent = -1;
      EXPECT_TRUE(statistics.find(key)->readInteger(percent)) << key;
      EXPECT_GE(percent, 0);
      EXPECT_LE(percent, 100);
    }
    EXPECT_NEAR(statistics.find("Device Utilization %")->numberOr(-1),
                100 * loadAt(machine, 1, second).gpu.active, 0.5);
  }
}

TEST(BuiltinSensors, TicksAreThoseOfTheMachinesPast) {
  const MachineDescription& machine = machineNamed("Mac Studio M2 Ultra");
  MachinePast past(machine, 1);
  past.moveTo(12.3);
  EXPECT_EQ(BuiltinSensors(machine, 1).stepAt(12.3).ticks, past.ticks());
}

TEST(BuiltinSensors, NameNoDocument) {
  EXPECT_EQ(BuiltinSensors(machineNamed("Mac mini M4"), 1).stepAt(1).powermetrics, std::nullopt);
}

TEST(BuiltinSensors, TheSameTimeGivesTheSameAnswersWhateverWasAskedBefore) {
  const MachineDescription& machine = machineNamed("MacBook Air M1");
  BuiltinSensors sensors(machine, 1);
  const RecordingStep atFirst = sensors.stepAt(7.7);
  sensors.stepAt(40);
  EXPECT_EQ(sensors.stepAt(7.7), atFirst);
  EXPECT_EQ(BuiltinSensors(machine, 1).stepAt(7.7), atFirst);
  EXPECT_NE(BuiltinSensors(machine, 2).stepAt(7.7), atFirst);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
