// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ports/smc_device.h"

#include <gtest/gtest.h>

#include "adapters/macos/c_adapters.h"
#include "base/text_format.h"
#include "darwin/on_a_mac.h"
#include "sensors/sgm1_smc_sensors.h"

namespace pallimo::darwin {
namespace {

const Lines kKeptOfOneSearch = {"1 x iterator of AppleSMC", "1 x main port",
                                "1 x service AppleSMC"};

/// A pass over the keys as the temperatures take it: "2 keys: Te05 flt  45.000, TC0P fpe2 720.000".
std::string pass() {
  const auto device = adapters::macos::makeSmcDevice();
  sensors::SGM1SMCSensors sensors(*device);
  sensors.openConnection();
  const auto count = sensors.readKeyCount();
  std::string text = count ? std::to_string(*count) + " keys:" : "no count:";
  for (const std::string& key : sensors.keyAtIndex(0, 2)) {
    const auto type = sensors.readKeyInfo(key);
    const auto value = sensors.readValue(key, type.value_or(""));
    text += " " + key + " " + type.value_or("none") + " ";
    text += value ? base::formatFixed(*value, 1) : "unread";
  }
  sensors.closeConnection();
  return text;
}

void furnish(TestMac& mac) {
  mac.smc.setFloat("Te05", 45);
  mac.smc.setFpe2("TC0P", 0x0B, 0x43);
}

class SmcDevice : public OnAMac {
 protected:
  SmcDevice() { furnish(*this); }

  const std::unique_ptr<ports::SmcDevice> device_ = adapters::macos::makeSmcDevice();
};

TEST_F(SmcDevice, AnswersAPassWithTheMachinesKeysAndValues) {
  EXPECT_EQ(pass(), "2 keys: Te05 flt  45.0 TC0P fpe2 720.0");
  EXPECT_EQ(smc.openHandles(), 0u);
  kept_ = kKeptOfOneSearch;
}

TEST_F(SmcDevice, OpensAHandleThatIsNeverZero) {
  const auto connection = device_->open();
  ASSERT_TRUE(connection);
  EXPECT_NE(*connection, 0u);
  EXPECT_EQ(mac.held(), (Lines{"1 x connection", "1 x iterator of AppleSMC", "1 x main port",
                               "1 x service AppleSMC"}));
  device_->close(*connection);
  kept_ = kKeptOfOneSearch;
}

TEST_F(SmcDevice, KeepsIteratorAndServiceOfEverySearchButNoConnection) {
  for (int i = 0; i < 3; ++i) pass();
  kept_ = {"3 x iterator of AppleSMC", "3 x main port", "3 x service AppleSMC"};
}

TEST_F(SmcDevice, WithoutTheServiceThereIsNoHandle) {
  mac.smcDevice = nullptr;
  EXPECT_EQ(device_->open(), std::nullopt);
  kept_ = {"1 x main port"};
}

TEST_F(SmcDevice, AServiceThatCannotBeOpenedGivesNoHandle) {
  smc.setOpens(false);
  EXPECT_EQ(device_->open(), std::nullopt);
  EXPECT_EQ(pass(), "no count:");
  kept_ = {"2 x iterator of AppleSMC", "2 x main port", "2 x service AppleSMC"};
}

TEST_F(SmcDevice, ACallWithoutAConnectionFails) {
  ports::SMCRequestRecord output;
  EXPECT_NE(device_->callStructMethod(0, ports::kSMCSelector, {}, output), 0);
}

TEST_F(SmcDevice, HandsTheKernelsResultOn) {
  smc.fail(ports::SMCCommand::readBytes, "Te05");
  const auto connection = device_->open();
  ports::SMCRequestRecord input;
  input.key = 0x54653035;
  input.keyInfoDataSize = 4;
  input.data8 = 5;
  ports::SMCRequestRecord output;
  EXPECT_EQ(device_->callStructMethod(*connection, ports::kSMCSelector, input, output), -536870206);
  device_->close(*connection);
  kept_ = kKeptOfOneSearch;
}

TEST(SmcDeviceFailures, EachLeavesOutWhatItConcernsAndNothingElse) {
  const std::string nothing = "no count:";
  EXPECT_EQ(outcomesOfEachFailure(furnish, pass,
                                  {"main port", "iterator of AppleSMC", "service AppleSMC"}),
            (Lines{"no failure: 2 keys: Te05 flt  45.0 TC0P fpe2 720.0", "IOMasterPort: " + nothing,
                   "IOServiceMatching: " + nothing, "IOServiceGetMatchingServices: " + nothing,
                   "IOIteratorNext: " + nothing, "IOServiceOpen: " + nothing,
                   "IOConnectCallStructMethod: no count: Te05 flt  45.0 TC0P fpe2 720.0",
                   "IOConnectCallStructMethod: 2 keys: TC0P fpe2 720.0",
                   "IOConnectCallStructMethod: 2 keys: Te05 flt  45.0",
                   "IOConnectCallStructMethod: 2 keys: Te05 none -1.0 TC0P fpe2 720.0",
                   "IOConnectCallStructMethod: 2 keys: Te05 flt  unread TC0P fpe2 720.0",
                   "IOConnectCallStructMethod: 2 keys: Te05 flt  45.0 TC0P none -1.0",
                   "IOConnectCallStructMethod: 2 keys: Te05 flt  45.0 TC0P fpe2 unread"}));
}

}  // namespace
}  // namespace pallimo::darwin
