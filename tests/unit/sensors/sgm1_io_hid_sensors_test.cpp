// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_io_hid_sensors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <future>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_hid_sensors.h"

namespace pallimo::sensors {
namespace {

using Calls = std::vector<std::string>;

class SGM1IOHIDSensorsTest : public ::testing::Test {
 protected:
  TemperatureReadings all() { return sensors_.readHIDTemperatures(0xFF00, 5, 15); }
  TemperatureReadings cpu() { return sensors_.readHIDCPUTemperatures(); }
  TemperatureReadings gpu() { return sensors_.readHIDGPUTemperatures(); }

  fakes::FakeHidSensors hid_;
  const SGM1IOHIDSensors sensors_{hid_};
};

TEST_F(SGM1IOHIDSensorsTest, NamesASensorByItsLocation) {
  hid_.add({.locationID = 0x54703069, .value = 45.5});
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", 45.5}}));
}

TEST_F(SGM1IOHIDSensorsTest, ReadsSensorsOfEveryName) {
  hid_.add("Tp0i", 45);
  hid_.add("TP0Z", 46);
  EXPECT_EQ(all(), (TemperatureReadings{{"TP0Z", 46}, {"Tp0i", 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, KeepsFourCharactersOfASmallLocation) {
  hid_.add({.locationID = 1, .value = 45});
  EXPECT_EQ(all(), (TemperatureReadings{{std::string("\0\0\0\1", 4), 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, NamesALargeLocationByItsLowFourBytes) {
  hid_.add({.locationID = 0x154703069, .value = 45});
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, SkipsASensorWithoutALocation) {
  hid_.add({.locationID = std::nullopt, .value = 45});
  hid_.add("Tp1i", 46);
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp1i", 46}}));
}

TEST_F(SGM1IOHIDSensorsTest, SkipsALocationThatIsNotAboveZero) {
  hid_.add({.locationID = 0, .value = 45});
  hid_.add({.locationID = -1, .value = 45});
  hid_.add({.locationID = std::numeric_limits<std::int64_t>::min(), .value = 45});
  EXPECT_EQ(all(), TemperatureReadings());
}

TEST_F(SGM1IOHIDSensorsTest, AsksASkippedSensorForNoEvent) {
  hid_.add({.locationID = 0, .value = 45});
  all();
  EXPECT_EQ(hid_.takeCalls().back(), "LocationID of 0");
}

TEST_F(SGM1IOHIDSensorsTest, ReadsMinusOneWithoutAnEvent) {
  hid_.add("Tp0i", std::nullopt);
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", -1}}));
}

TEST_F(SGM1IOHIDSensorsTest, KeepsValuesThatAreNotAboveZero) {
  hid_.add("Tp0i", -4);
  hid_.add("Tp1i", 0);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp0i", -4}, {"Tp1i", 0}}));
}

TEST_F(SGM1IOHIDSensorsTest, TakesTheLaterOfTwoSensorsOfOneName) {
  hid_.add("Tp0i", 45);
  hid_.add("Tp0i", 50);
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", 50}}));
}

TEST_F(SGM1IOHIDSensorsTest, TakesTheLaterOfTwoSensorsEvenWithoutAnEvent) {
  hid_.add("Tp0i", 45);
  hid_.add("Tp0i", std::nullopt);
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", -1}}));
}

TEST_F(SGM1IOHIDSensorsTest, GivesNothingWithoutAListOfServices) {
  hid_.add("Tp0i", 45);
  hid_.setHasList(false);
  EXPECT_EQ(all(), TemperatureReadings());
}

TEST_F(SGM1IOHIDSensorsTest, GivesNothingOfAnEmptyListOfServices) {
  EXPECT_EQ(all(), TemperatureReadings());
}

TEST_F(SGM1IOHIDSensorsTest, ReadsOnlyWhatMatchesPageAndUsage) {
  hid_.add({.locationID = 0x54703069, .value = 45});
  hid_.add({.locationID = 0x54703169, .value = 46, .page = 0xFF08});
  hid_.add({.locationID = 0x54703269, .value = 47, .usage = 6});
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, ReadsThePageUsageAndTypeItIsAskedFor) {
  hid_.add("Tp0i", 45);
  hid_.add({.locationID = 0x54703169, .value = 3, .page = 0xFF08, .usage = 2, .type = 25});
  EXPECT_EQ(sensors_.readHIDTemperatures(0xFF08, 2, 25), (TemperatureReadings{{"Tp1i", 3}}));
  const Calls expected = {
      "client",          "match PrimaryUsagePage 65288", "match PrimaryUsage 2", "services",
      "LocationID of 0", "event 25 field 1638400 of 0"};
  EXPECT_EQ(hid_.takeCalls(), expected);
}

TEST_F(SGM1IOHIDSensorsTest, ReadsMinusOneForAnEventOfAnotherType) {
  hid_.add({.locationID = 0x54703069, .value = 45, .type = 1});
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp0i", -1}}));
}

TEST_F(SGM1IOHIDSensorsTest, AsksForTemperaturesOfThePowerManagementUnit) {
  hid_.add("Tp0i", 45);
  const Calls expected = {
      "client",          "match PrimaryUsagePage 65280", "match PrimaryUsage 5", "services",
      "LocationID of 0", "event 15 field 983040 of 0"};
  cpu();
  EXPECT_EQ(hid_.takeCalls(), expected);
  gpu();
  EXPECT_EQ(hid_.takeCalls(), expected);
}

TEST_F(SGM1IOHIDSensorsTest, NarrowsToTheCPUsSensors) {
  hid_.add("Tp0i", 45);
  hid_.add("Te3i", std::nullopt);
  hid_.add("Tg0i", 40);
  hid_.add("TP0Z", 30);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Te3i", -1}, {"Tp0i", 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, DropsTp9i) {
  hid_.add({.locationID = 0x54703969, .value = 45});
  EXPECT_EQ(cpu(), TemperatureReadings());
  EXPECT_EQ(gpu(), TemperatureReadings());
  EXPECT_EQ(all(), (TemperatureReadings{{"Tp9i", 45}}));
}

TEST_F(SGM1IOHIDSensorsTest, NarrowsToTheGPUsSensors) {
  hid_.add("Tp0i", 45);
  hid_.add("Tg0i", 40);
  hid_.add("Tgfi", std::nullopt);
  EXPECT_EQ(gpu(), (TemperatureReadings{{"Tg0i", 40}, {"Tgfi", -1}}));
}

TEST_F(SGM1IOHIDSensorsTest, MakesAClientForEachReadAndKeepsNone) {
  hid_.add("Tp0i", 45);
  cpu();
  EXPECT_EQ(hid_.liveClients(), 0u);
  hid_.clear();
  hid_.add("Tp0i", 50);
  EXPECT_EQ(cpu(), (TemperatureReadings{{"Tp0i", 50}}));
  const Calls calls = hid_.takeCalls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "client"), 2);
}

TEST(SGM1IOHIDSensorsDeathTest, StopsWithoutAClient) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fakes::FakeHidSensors hid;
  hid.setMakesClients(false);
  const SGM1IOHIDSensors sensors(hid);
  EXPECT_DEATH(sensors.readHIDCPUTemperatures(), "The HID event system made no client\\.");
}

TEST_F(SGM1IOHIDSensorsTest, TwoThreadsMayReadAtOnce) {
  hid_.add("Tp0i", 45);
  hid_.add("Te0i", std::nullopt);
  hid_.add("Tg0i", 40);
  const auto readAll = [this] {
    bool isRight = true;
    for (int i = 0; i < 200; ++i) {
      isRight = isRight && cpu() == TemperatureReadings{{"Te0i", -1}, {"Tp0i", 45}} &&
                gpu() == TemperatureReadings{{"Tg0i", 40}};
    }
    return isRight;
  };
  auto other = std::async(std::launch::async, readAll);
  EXPECT_TRUE(readAll());
  EXPECT_TRUE(other.get());
}

}  // namespace
}  // namespace pallimo::sensors
