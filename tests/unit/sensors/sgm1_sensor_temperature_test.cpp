// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_sensor_temperature.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::sensors {
namespace {

using Calls = std::vector<std::string>;

/// A machine that has both sources: core and GPU at 45 and 40 on the SMC, at 55 and 50 on HID.
class SGM1SensorTemperatureTest : public ::testing::Test {
 protected:
  SGM1SensorTemperatureTest() {
    controls_.setText("machdep.cpu.brand_string", "Apple M1");
    smc_.setFloat("Tp01", 45);
    smc_.setFloat("Tg05", 40);
    hid_.add("Tp0i", 55);
    hid_.add("Tg0i", 50);
  }

  SGM1SensorTemperature on(std::string_view model) {
    controls_.setText("hw.model", model);
    return SGM1SensorTemperature({controls_, smc_, hid_});
  }
  std::string sensorTypeOf(std::string_view model) { return on(model).sensorType(); }

  fakes::FakeSystemControls controls_;
  fakes::FakeSmcDevice smc_;
  fakes::FakeHidSensors hid_;
};

TEST_F(SGM1SensorTemperatureTest, ChoosesThePMUOnTheFirstMachinesWithAnM1) {
  for (const char* model :
       {"MacBookPro17,1", "MacBookAir10,1", "Macmini9,1", "iMac21,1", "iMac21,2"}) {
    EXPECT_EQ(sensorTypeOf(model), "PMU") << model;
  }
}

TEST_F(SGM1SensorTemperatureTest, ChoosesTheSMCOnEveryOtherMachine) {
  for (const char* model : {"MacBookPro18,3", "Mac14,2", "Mac16,1", "Macmini9,2", "iMac21,3",
                            "MacBookPro17,10", "toaster", ""}) {
    EXPECT_EQ(sensorTypeOf(model), "SMC") << model;
  }
}

TEST_F(SGM1SensorTemperatureTest, ChoosesTheSMCForANameThatIsNotExactlyTheSame) {
  for (const char* model : {"MacBookAir10,1 ", " MacBookAir10,1", "macbookair10,1", "MACMINI9,1",
                            "MacBookAir10", "iMac21,2\n"}) {
    EXPECT_EQ(sensorTypeOf(model), "SMC") << model;
  }
}

TEST_F(SGM1SensorTemperatureTest, RemembersTheModel) {
  EXPECT_EQ(on("MacBookAir10,1").machineModel(), "MacBookAir10,1");
  EXPECT_EQ(on("Mac14,2").machineModel(), "Mac14,2");
}

TEST_F(SGM1SensorTemperatureTest, TouchesNoSMCOnThePMU) {
  SGM1SensorTemperature sensors = on("MacBookPro17,1");
  EXPECT_EQ(sensors.smcTmp(), nullptr);
  sensors.readCPUTemperatures();
  sensors.readGPUTemperatures();
  EXPECT_EQ(smc_.takeCalls(), Calls());
}

TEST_F(SGM1SensorTemperatureTest, FindsTheKeysAtOnceOnTheSMC) {
  const SGM1SensorTemperature sensors = on("MacBookPro18,3");
  ASSERT_NE(sensors.smcTmp(), nullptr);
  EXPECT_EQ(sensors.smcTmp()->availableTemperatureKeys().size(), 2u);
}

TEST_F(SGM1SensorTemperatureTest, TouchesNoHIDOnTheSMC) {
  SGM1SensorTemperature sensors = on("MacBookPro18,3");
  sensors.readCPUTemperatures();
  sensors.readGPUTemperatures();
  EXPECT_EQ(hid_.takeCalls(), Calls());
}

TEST_F(SGM1SensorTemperatureTest, ReadsTheSMCsSensors) {
  SGM1SensorTemperature sensors = on("MacBookPro18,3");
  EXPECT_EQ(sensors.readCPUTemperatures(), (TemperatureReadings{{"Tp01", 45}}));
  EXPECT_EQ(sensors.readGPUTemperatures(), (TemperatureReadings{{"Tg05", 40}}));
}

TEST_F(SGM1SensorTemperatureTest, ReadsThePMUsSensors) {
  SGM1SensorTemperature sensors = on("MacBookAir10,1");
  EXPECT_EQ(sensors.readCPUTemperatures(), (TemperatureReadings{{"Tp0i", 55}}));
  EXPECT_EQ(sensors.readGPUTemperatures(), (TemperatureReadings{{"Tg0i", 50}}));
}

TEST_F(SGM1SensorTemperatureTest, HandsOnMinusOneFromThePMU) {
  hid_.clear();
  hid_.add("Te0i", std::nullopt);
  hid_.add("Tg1i", std::nullopt);
  SGM1SensorTemperature sensors = on("MacBookAir10,1");
  EXPECT_EQ(sensors.readCPUTemperatures(), (TemperatureReadings{{"Te0i", -1}}));
  EXPECT_EQ(sensors.readGPUTemperatures(), (TemperatureReadings{{"Tg1i", -1}}));
}

TEST_F(SGM1SensorTemperatureTest, ReadsNothingWithoutHIDServices) {
  hid_.setHasList(false);
  SGM1SensorTemperature sensors = on("MacBookAir10,1");
  EXPECT_EQ(sensors.readCPUTemperatures(), TemperatureReadings());
  EXPECT_EQ(sensors.readGPUTemperatures(), TemperatureReadings());
}

TEST_F(SGM1SensorTemperatureTest, ReadsNothingWithoutAnSMC) {
  smc_.setOpens(false);
  SGM1SensorTemperature sensors = on("MacBookPro18,3");
  EXPECT_EQ(sensors.readCPUTemperatures(), TemperatureReadings());
  EXPECT_EQ(sensors.readGPUTemperatures(), TemperatureReadings());
}

TEST_F(SGM1SensorTemperatureTest, StaysWithItsChoice) {
  SGM1SensorTemperature sensors = on("MacBookAir10,1");
  controls_.setText("hw.model", "MacBookPro18,3");
  EXPECT_EQ(sensors.readCPUTemperatures(), (TemperatureReadings{{"Tp0i", 55}}));
  EXPECT_EQ(sensors.sensorType(), "PMU");
  EXPECT_EQ(sensors.machineModel(), "MacBookAir10,1");
}

TEST(SGM1SensorTemperatureDeathTest, StopsOnAMachineWithoutAModel) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const fakes::FakeSystemControls controls;
  fakes::FakeSmcDevice smc;
  fakes::FakeHidSensors hid;
  EXPECT_DEATH(SGM1SensorTemperature({controls, smc, hid}),
               "The kernel variable hw\\.model can't be read\\.");
}

}  // namespace
}  // namespace pallimo::sensors
