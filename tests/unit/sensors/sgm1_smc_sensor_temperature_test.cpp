// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_smc_sensor_temperature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::sensors {
namespace {

using ports::SMCCommand;
using Calls = std::vector<std::string>;
using Keys = std::map<std::string, std::string, std::less<>>;

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

/// A machine with an M1 until the test says otherwise, and an SMC that starts without keys. That no
/// handle is left open is the fake's to judge.
class SGM1SMCSensorTemperatureTest : public ::testing::Test {
 protected:
  SGM1SMCSensorTemperatureTest() { setBrand("Apple M1"); }

  void setBrand(std::string_view brand) { controls_.setText("machdep.cpu.brand_string", brand); }
  void setFloats(const std::map<std::string, float>& values) {
    for (const auto& [name, value] : values) device_.setFloat(name, value);
  }

  /// Made on first use, when the test has set the keys.
  SGM1SMCSensorTemperature& sensors() {
    if (!sensors_) {
      sensors_.emplace(device_, controls_);
      discoveryCalls_ = device_.takeCalls();
    }
    return *sensors_;
  }
  const Calls& discoveryCalls() {
    sensors();
    return discoveryCalls_;
  }
  TemperatureReadings cpu() { return sensors().readCPUTemperatures(); }
  TemperatureReadings gpu() { return sensors().readGPUTemperatures(); }
  Calls callsOfCPUPass() {
    cpu();
    return device_.takeCalls();
  }
  Calls callsOfGPUPass() {
    gpu();
    return device_.takeCalls();
  }
  void expectNothingAnywhere() {
    EXPECT_EQ(sensors().availableTemperatureKeys(), Keys());
    EXPECT_EQ(cpu(), TemperatureReadings());
    EXPECT_EQ(gpu(), TemperatureReadings());
    EXPECT_EQ(sensors().conn(), 0u);
  }

  fakes::FakeSmcDevice device_;
  fakes::FakeSystemControls controls_;

 private:
  std::optional<SGM1SMCSensorTemperature> sensors_;
  Calls discoveryCalls_;
};

using SMCDiscovery = SGM1SMCSensorTemperatureTest;
using SMCCPUPass = SGM1SMCSensorTemperatureTest;
using SMCGPUPass = SGM1SMCSensorTemperatureTest;
using SMCFailures = SGM1SMCSensorTemperatureTest;

TEST_F(SMCDiscovery, KeepsTheTypesOfCPUAndGPUKeys) {
  device_.setFpe2("Tp01", 0x0B, 0x43);
  device_.setFloat("Tg05", 45);
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tg05", "flt "}, {"Tp01", "fpe2"}}));
}

TEST_F(SMCDiscovery, RunsAtOnceWhenTheObjectIsMade) {
  device_.setFloat("Tp01", 45);
  const SGM1SMCSensorTemperature made(device_, controls_);
  EXPECT_EQ(made.availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
  EXPECT_EQ(made.conn(), 0u);
}

TEST_F(SMCDiscovery, CountsThenListsThenAsksWhatBeginsWithT) {
  setFloats({{"Tp01", 45}, {"FNum", 2}, {"tp05", 40}, {"TC0P", 50}});
  const Calls expected = {"open",    "read #KEY", "index 0",   "index 1",   "index 2",
                          "index 3", "info TC0P", "info Tp01", "info tp05", "close"};
  EXPECT_EQ(discoveryCalls(), expected);
}

TEST_F(SMCDiscovery, DropsKeysThatStandInNeitherTable) {
  setFloats({{"TC0P", 50}, {"tp01", 40}, {"Tp01", 45}});
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
}

TEST_F(SMCDiscovery, DropsAKeyWhoseInformationFails) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.fail(SMCCommand::readKeyInfo, "Tp01");
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp05", "flt "}}));
}

TEST_F(SMCDiscovery, DropsAKeyOfNoSize) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.setSize("Tp01", 0);
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp05", "flt "}}));
}

TEST_F(SMCDiscovery, DropsAKeyWhoseIndexFails) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.fail(SMCCommand::keyAtIndex, "Tp05");
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
}

TEST_F(SMCDiscovery, KeepsAKeyOfATypeThatNobodyDecodes) {
  device_.setKey("Tp01", "sp78", {45, 0});
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "sp78"}}));
}

TEST_F(SMCDiscovery, LooksOnlyAtAsManyKeysAsTheCountSays) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.setKeyCount(1);
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
}

TEST_F(SMCDiscovery, LivesWithACountThatIsTooHigh) {
  device_.setFloat("Tp01", 45);
  device_.setKeyCount(5);
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
}

TEST_F(SMCDiscovery, FindsNothingOnAMachineWithoutKeys) { expectNothingAnywhere(); }

TEST_F(SMCDiscovery, IsNeverRepeated) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.fail(SMCCommand::readKeyInfo, "Tp05");
  sensors();
  device_.mend();
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
}

TEST_F(SMCCPUPass, ReadsOnlyCPUKeys) {
  device_.setFpe2("Tp01", 0x0B, 0x43);
  device_.setFloat("Tg05", 45);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 720}}));
}

TEST_F(SMCCPUPass, OpensReadsAndCloses) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}, {"Te05", 38}});
  EXPECT_EQ(sensors().conn(), 0u);
  EXPECT_EQ(callsOfCPUPass(), (Calls{"open", "read Te05", "read Tp01", "close"}));
  EXPECT_EQ(sensors().conn(), 0u);
}

TEST_F(SMCCPUPass, ReadsAfreshEachTime) {
  device_.setFloat("Tp01", 45);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
  device_.setFloat("Tp01", 50);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 50}}));
}

TEST_F(SMCCPUPass, LeavesOutAKeyThatCannotBeRead) {
  setFloats({{"Tp01", 45}, {"Tp05", 46}});
  device_.fail(SMCCommand::readBytes, "Tp01");
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp05", 46}}));
}

TEST_F(SMCCPUPass, ReadsAKeyAgainThatFailedInThePassBefore) {
  device_.setFloat("Tp01", 45);
  sensors();
  device_.fail(SMCCommand::readBytes, "Tp01");
  EXPECT_EQ(cpu(), TemperatureReadings());
  device_.mend();
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
}

TEST_F(SMCCPUPass, DropsWhatIsNotAboveZero) {
  setFloats({{"Tp01", 0}, {"Tp05", -5}, {"Tp0D", kNotANumber}, {"Tp0H", 0.5f}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp0H", 0.5}}));
}

TEST_F(SMCCPUPass, DropsAKeyOfATypeThatNobodyDecodes) {
  device_.setKey("Tp01", "sp78", {0x00, 0x00, 0x34, 0x42});
  device_.setFloat("Tp05", 45);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp05", 45}}));
}

TEST_F(SMCCPUPass, KeepsALowValueOnAnM1) {
  setFloats({{"Tp01", 15}, {"Te05", 40}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}, {"Tp01", 15}}));
}

TEST_F(SMCCPUPass, KeepsALowValueOnAnM3) {
  setBrand("Apple M3 Max");
  device_.setFloat("Tp01", 15);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 15}}));
}

TEST_F(SMCCPUPass, ReadsTe05OnlyAsAKeyOfItsOwnOnOtherChips) {
  device_.setFloat("Tp01", 15);
  for (const char* brand : {"Apple M1", "Apple M1 Ultra", "Apple M3 Pro", "Apple m2", ""}) {
    setBrand(brand);
    EXPECT_EQ(callsOfCPUPass(), (Calls{"open", "read Tp01", "close"})) << brand;
  }
}

TEST_F(SMCCPUPass, ReplacesALowValueByTe05OnAnM2) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 15}, {"Te05", 40}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}, {"Tp01", 40}}));
}

TEST_F(SMCCPUPass, ReplacesALowValueByTe05OnAnM4) {
  setBrand("Apple M4");
  setFloats({{"Tp13", 15}, {"Te05", 40}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}, {"Tp13", 40}}));
}

TEST_F(SMCCPUPass, KeepsTwentyDegreesOnAnM2) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 20}, {"Tp05", 19.5f}, {"Te05", 40}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}, {"Tp01", 20}, {"Tp05", 40}}));
}

TEST_F(SMCCPUPass, FindsTheChipAnywhereInTheBrand) {
  setFloats({{"Tp17", 15}, {"Te05", 40}});
  for (const char* brand : {"Apple M2 Pro", "Apple M4 Max", "M2", "xM4x", "Apple M22"}) {
    setBrand(brand);
    EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}, {"Tp17", 40}})) << brand;
  }
}

TEST_F(SMCCPUPass, ReadsTheBrandAnewEachTime) {
  setFloats({{"Tp01", 15}, {"Te05", 40}});
  EXPECT_EQ(cpu().at("Tp01"), 15);
  setBrand("Apple M2");
  EXPECT_EQ(cpu().at("Tp01"), 40);
}

TEST_F(SMCCPUPass, ReadsTe05OnceMoreAfterTheKeysAndBeforeItCloses) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 45}, {"Te05", 40}});
  EXPECT_EQ(callsOfCPUPass(), (Calls{"open", "read Te05", "read Tp01", "read Te05", "close"}));
}

TEST_F(SMCCPUPass, ReadsTe05AlsoWhenItWasNotFoundAtTheStart) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 15}, {"Te05", 40}});
  device_.fail(SMCCommand::readKeyInfo, "Te05");
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 40}}));
}

TEST_F(SMCCPUPass, ReadsTe05AlsoWhenNoKeyIsLow) {
  setBrand("Apple M4");
  device_.setFloat("Tp13", 45);
  EXPECT_EQ(callsOfCPUPass(), (Calls{"open", "read Tp13", "read Te05", "close"}));
}

TEST_F(SMCCPUPass, TakesTe05AsAFloatWhateverItsType) {
  setBrand("Apple M2");
  device_.setFloat("Tp01", 15);
  device_.setKey("Te05", "fpe2", {0x00, 0x00, 0x34, 0x42});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
}

TEST_F(SMCCPUPass, ReplacesByZeroWhenTe05CannotBeRead) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 15}, {"Tp05", 45}, {"Te05", 40}});
  device_.fail(SMCCommand::readBytes, "Te05");
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 0}, {"Tp05", 45}}));
}

TEST_F(SMCCPUPass, ReplacesByZeroWhenThereIsNoTe05) {
  setBrand("Apple M4");
  device_.setFloat("Tp13", 15);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp13", 0}}));
}

TEST_F(SMCCPUPass, ReplacesByWhateverTe05Reads) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 15}, {"Te05", -3}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", -3}}));
  device_.setFloat("Te05", 12);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 12}, {"Tp01", 12}}));
}

TEST_F(SMCCPUPass, ReplacesEvenByWhatIsNotANumber) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 15}, {"Te05", kNotANumber}});
  const TemperatureReadings readings = cpu();
  ASSERT_EQ(readings.size(), 1u);
  EXPECT_TRUE(std::isnan(readings.at("Tp01")));
}

TEST_F(SMCCPUPass, DropsWhatIsNotAboveZeroBeforeItReplaces) {
  setBrand("Apple M2");
  setFloats({{"Tp01", 0}, {"Tp05", -5}, {"Tp0D", kNotANumber}, {"Te05", 40}});
  device_.setKey("Tp0H", "sp78", {45, 0});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te05", 40}}));
}

TEST_F(SMCCPUPass, NeverReadsKeysThatBeginWithTp0OnAnM4) {
  for (const char* name : {"Tp01", "Tp05", "Tp0D", "Tp0H", "Tp0L", "Tp0P", "Tp0X", "Tp0b", "Tp0f",
                           "Tp0j", "Tp0n", "Tp0r", "Tp0v", "Tp09", "Tp0T", "Tp13", "Te05"}) {
    device_.setFloat(name, 45);
  }
  setBrand("Apple M4");
  EXPECT_EQ(callsOfCPUPass(), (Calls{"open", "read Te05", "read Tp13", "read Te05", "close"}));
}

TEST_F(SMCCPUPass, ReadsKeysThatBeginWithTe0OnAnM4) {
  setBrand("Apple M4");
  setFloats({{"Te0H", 41}, {"Tp01", 45}});
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te0H", 41}}));
}

TEST_F(SMCCPUPass, ReadsKeysThatBeginWithTp0OnAnM2) {
  setBrand("Apple M2");
  device_.setFloat("Tp01", 45);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
}

TEST_F(SMCCPUPass, KeepsTheTp0KeysAmongTheAvailableOnesOnAnM4) {
  setBrand("Apple M4");
  device_.setFloat("Tp01", 45);
  cpu();
  EXPECT_EQ(sensors().availableTemperatureKeys(), (Keys{{"Tp01", "flt "}}));
}

TEST_F(SMCGPUPass, ReadsOnlyGPUKeys) {
  device_.setFpe2("Tp01", 0x0B, 0x43);
  device_.setFloat("Tg05", 45);
  EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg05", 45}}));
}

TEST_F(SMCGPUPass, OpensReadsAndCloses) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}, {"Tg3y", 41}});
  EXPECT_EQ(callsOfGPUPass(), (Calls{"open", "read Tg05", "read Tg3y", "close"}));
  EXPECT_EQ(sensors().conn(), 0u);
}

TEST_F(SMCGPUPass, DropsWhatIsNotAboveZero) {
  setFloats({{"Tg05", 0}, {"Tg0D", -5}, {"Tg0L", kNotANumber}, {"Tg0T", 0.5f}});
  device_.setKey("Tg0b", "sp78", {45, 0});
  EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg0T", 0.5}}));
}

TEST_F(SMCGPUPass, LeavesOutAKeyThatCannotBeRead) {
  setFloats({{"Tg05", 45}, {"Tg0D", 46}});
  device_.fail(SMCCommand::readBytes, "Tg05");
  EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg0D", 46}}));
}

TEST_F(SMCGPUPass, IsTheSameOnEveryChip) {
  setFloats({{"Tg05", 15}, {"Te05", 40}});
  for (const char* brand : {"Apple M1", "Apple M2", "Apple M4"}) {
    setBrand(brand);
    EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg05", 15}})) << brand;
    EXPECT_EQ(callsOfGPUPass(), (Calls{"open", "read Tg05", "close", "open", "read Tg05", "close"}))
        << brand;
  }
}

TEST(SMCWithoutABrand, FindsTheKeysAndReadsTheGPU) {
  const fakes::FakeSystemControls nameless;
  fakes::FakeSmcDevice device;
  device.setFloat("Tp01", 45);
  device.setFloat("Tg05", 15);
  SGM1SMCSensorTemperature sensors(device, nameless);
  EXPECT_EQ(sensors.availableTemperatureKeys(), (Keys{{"Tg05", "flt "}, {"Tp01", "flt "}}));
  EXPECT_EQ(sensors.readGPUTemperatures(), (TemperatureReadings{{"Tg05", 15}}));
}

TEST(SMCWithoutABrandDeathTest, StopsOnceTheCPUIsRead) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const fakes::FakeSystemControls nameless;
  fakes::FakeSmcDevice device;
  SGM1SMCSensorTemperature sensors(device, nameless);
  EXPECT_DEATH(sensors.readCPUTemperatures(),
               "The kernel variable machdep\\.cpu\\.brand_string can't be read\\.");
}

TEST_F(SMCFailures, WithoutAnSMCThereIsNothing) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  device_.setOpens(false);
  expectNothingAnywhere();
}

TEST_F(SMCFailures, WithoutAConnectionInAPassThatPassIsEmpty) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  sensors();
  device_.setOpens(false);
  EXPECT_EQ(cpu(), TemperatureReadings());
  EXPECT_EQ(gpu(), TemperatureReadings());
  EXPECT_EQ(sensors().conn(), 0u);
  device_.setOpens(true);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp01", 45}}));
  EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg05", 40}}));
}

TEST_F(SMCFailures, WithoutAKeyCountThereIsNothing) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  device_.fail(SMCCommand::readBytes, "#KEY");
  expectNothingAnywhere();
  EXPECT_EQ(discoveryCalls(), (Calls{"open", "read #KEY", "close"}));
}

TEST_F(SMCFailures, WithoutKeyNamesThereIsNothing) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  device_.failAll(SMCCommand::keyAtIndex);
  expectNothingAnywhere();
}

TEST_F(SMCFailures, WithoutKeyInformationThereIsNothing) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  device_.failAll(SMCCommand::readKeyInfo);
  expectNothingAnywhere();
}

TEST_F(SMCFailures, WithoutAnyReadThePassesAreEmpty) {
  setFloats({{"Tp01", 45}, {"Tg05", 40}});
  setBrand("Apple M2");
  sensors();
  device_.failAll(SMCCommand::readBytes);
  EXPECT_EQ(cpu(), TemperatureReadings());
  EXPECT_EQ(gpu(), TemperatureReadings());
  EXPECT_EQ(sensors().conn(), 0u);
}

}  // namespace
}  // namespace pallimo::sensors
