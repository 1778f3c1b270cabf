// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ports/hid_sensors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "adapters/macos/c_adapters.h"
#include "base/four_char_code.h"
#include "base/text_format.h"
#include "darwin/on_a_mac.h"
#include "sensors/sgm1_io_hid_sensors.h"

namespace pallimo::darwin {
namespace {

using sensors::SGM1IOHIDSensors;
using sensors::TemperatureReadings;

constexpr std::array kTemperatureSensors{ports::HidMatch{"PrimaryUsagePage", 0xFF00},
                                         ports::HidMatch{"PrimaryUsage", 5}};

void furnish(TestMac& mac) {
  mac.hid.add({.locationID = 0x54703069, .value = 1, .page = 0x0C});  // no temperature sensor
  mac.hid.add("Tp0i", 41.5);
  mac.hid.add("Tg0i", std::nullopt);
}

/// Every temperature sensor: "Tp0i 41.5, Tg0i none".
std::string read() {
  const auto hid = adapters::macos::makeHidSensors();
  const auto client = hid->createClient();
  if (!client) return "no client";
  client->setMatching(kTemperatureSensors);
  const auto services = client->copyServices();
  if (!services) return "no services";
  std::string text;
  for (std::size_t service = 0; service < *services; ++service) {
    const auto location = client->integerProperty(service, "LocationID");
    const auto value = client->eventFloat(service, 15, 15 << 16);
    if (service > 0) text += ", ";
    text += location ? base::decodeFourCharCode(static_cast<std::uint32_t>(*location)) : "unnamed";
    text += value ? " " + base::formatFixed(*value, 1) : " none";
  }
  return text;
}

class HidSensors : public OnAMac {
 protected:
  HidSensors() { furnish(*this); }

  /// "LocationID" as the system keeps it in that object.
  std::optional<std::int64_t> locationOf(FakeObject::Value value) {
    mac.hidProperty = [this, value] { return mac.objects.make(value); };
    const auto client = hid_->createClient();
    client->setMatching(kTemperatureSensors);
    EXPECT_EQ(client->copyServices(), 2u);
    return client->integerProperty(0, "LocationID");
  }

  const std::unique_ptr<ports::HidSensors> hid_ = adapters::macos::makeHidSensors();
};

TEST_F(HidSensors, ReadsTheTemperatureSensorsAndNoOthers) {
  EXPECT_EQ(read(), "Tp0i 41.5, Tg0i none");
}

TEST_F(HidSensors, GivesWhatTheTemperaturesReadOnTheMachineItself) {
  const TemperatureReadings direct = SGM1IOHIDSensors(hid).readHIDTemperatures(0xFF00, 5, 15);
  EXPECT_EQ(direct.size(), 2u);
  EXPECT_EQ(SGM1IOHIDSensors(*hid_).readHIDTemperatures(0xFF00, 5, 15), direct);
}

TEST_F(HidSensors, MakesAClientForEachReadAndKeepsNone) {
  for (int i = 0; i < 3; ++i) SGM1IOHIDSensors(*hid_).readHIDCPUTemperatures();
  EXPECT_EQ(hid.liveClients(), 0u);
}

TEST_F(HidSensors, AnEmptyListIsAList) {
  hid.clear();
  EXPECT_EQ(read(), "");
}

TEST_F(HidSensors, NoListIsNone) {
  hid.setHasList(false);
  EXPECT_EQ(read(), "no services");
}

TEST_F(HidSensors, APropertyIsAnIntegerInWhateverFormItIsKept) {
  EXPECT_EQ(locationOf(std::int64_t{0x54703069}), 0x54703069);
  EXPECT_EQ(locationOf(std::int64_t{-1}), -1);
  EXPECT_EQ(locationOf(3.0), 3);
}

TEST_F(HidSensors, APropertyThatIsNoIntegerGivesNothing) {
  EXPECT_EQ(locationOf(2.5), std::nullopt);
  EXPECT_EQ(locationOf(1e30), std::nullopt);
  EXPECT_EQ(locationOf(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
  EXPECT_EQ(locationOf(true), std::nullopt);
  EXPECT_EQ(locationOf(std::string("3")), std::nullopt);
}

TEST(HidSensorsFailures, EachLeavesOutWhatItConcernsAndNothingElse) {
  const std::string all = "Tp0i 41.5, Tg0i none";
  EXPECT_EQ(outcomesOfEachFailure(furnish, read),
            (Lines{"no failure: " + all, "IOHIDEventSystemClientCreate: no client",
                   "CFDictionaryCreateMutable: no services", "CFStringCreateWithBytes: no services",
                   "CFNumberCreate: no services", "CFStringCreateWithBytes: no services",
                   "CFNumberCreate: no services", "IOHIDEventSystemClientCopyServices: no services",
                   "CFStringCreateWithBytes: unnamed 41.5, Tg0i none",
                   "IOHIDServiceClientCopyProperty: unnamed 41.5, Tg0i none",
                   "IOHIDServiceClientCopyEvent: Tp0i none, Tg0i none",
                   "CFStringCreateWithBytes: Tp0i 41.5, unnamed none",
                   "IOHIDServiceClientCopyProperty: Tp0i 41.5, unnamed none",
                   "IOHIDServiceClientCopyEvent: " + all}));
}

}  // namespace
}  // namespace pallimo::darwin
