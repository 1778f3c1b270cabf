// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_hid_sensors.h"

#include <gtest/gtest.h>

#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

using Matching = std::vector<ports::HidMatch>;

const Matching kTemperature{{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 5}};
constexpr std::int32_t kType = 15;
constexpr std::int32_t kField = 15 << 16;

class SimulatedHidSensorsTest : public ::testing::Test {
 protected:
  std::unique_ptr<ports::HidClient> clientOf(const Matching& matching) {
    auto client = hid_.createClient();
    client->setMatching(matching);
    return client;
  }
  std::unique_ptr<ports::HidClient> temperatureClient() { return clientOf(kTemperature); }

  std::optional<std::size_t> servicesFor(const Matching& matching) {
    return clientOf(matching)->copyServices();
  }

  MovableSteps steps_{{stepWithHid({{0x54703069, 45.5}, {std::nullopt, 30}, {7, std::nullopt}}),
                       stepWithHid({{0x54703169, 50}}), RecordingStep{}, stepWithHid({})}};
  SimulatedHidSensors hid_{steps_.now()};
};

TEST_F(SimulatedHidSensorsTest, ListsTheStepsReadings) {
  EXPECT_EQ(temperatureClient()->copyServices(), 3u);
  steps_.now().moveTo(2);
  EXPECT_EQ(temperatureClient()->copyServices(), 1u);
}

TEST_F(SimulatedHidSensorsTest, GivesNoListInAStepWithoutServices) {
  steps_.now().moveTo(3);
  EXPECT_EQ(temperatureClient()->copyServices(), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, GivesAnEmptyListInAStepWithAnEmptyOne) {
  steps_.now().moveTo(4);
  EXPECT_EQ(temperatureClient()->copyServices(), 0u);
}

TEST_F(SimulatedHidSensorsTest, TheOrderOfTheMatchingDoesNotMatter) {
  EXPECT_EQ(servicesFor({{"PrimaryUsage", 5}, {"PrimaryUsagePage", 0xFF00}}), 3u);
}

TEST_F(SimulatedHidSensorsTest, FindsNothingForAnyOtherMatching) {
  EXPECT_EQ(servicesFor({}), 0u);
  EXPECT_EQ(servicesFor({{"PrimaryUsagePage", 0xFF00}}), 0u);
  EXPECT_EQ(servicesFor({{"PrimaryUsagePage", 0xFF08}, {"PrimaryUsage", 5}}), 0u);
  EXPECT_EQ(servicesFor({{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 2}}), 0u);
  EXPECT_EQ(servicesFor({{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsagePage", 0xFF00}}), 0u);
  EXPECT_EQ(servicesFor({{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 5}, {"LocationID", 7}}),
            0u);
}

TEST_F(SimulatedHidSensorsTest, FindsNothingForAClientThatNeverSaidWhatItWants) {
  const auto client = hid_.createClient();
  EXPECT_EQ(client->copyServices(), 0u);
  EXPECT_EQ(client->integerProperty(0, "LocationID"), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, AnswersNothingBeforeTheServicesAreTakenHoldOf) {
  const auto client = temperatureClient();
  EXPECT_EQ(client->integerProperty(0, "LocationID"), std::nullopt);
  EXPECT_EQ(client->eventFloat(0, kType, kField), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, TellsWhereASensorIs) {
  const auto client = temperatureClient();
  client->copyServices();
  EXPECT_EQ(client->integerProperty(0, "LocationID"), 0x54703069);
  EXPECT_EQ(client->integerProperty(1, "LocationID"), std::nullopt);
  EXPECT_EQ(client->integerProperty(2, "LocationID"), 7);
}

TEST_F(SimulatedHidSensorsTest, HasNoOtherProperty) {
  const auto client = temperatureClient();
  client->copyServices();
  EXPECT_EQ(client->integerProperty(0, "PrimaryUsage"), std::nullopt);
  EXPECT_EQ(client->integerProperty(0, "locationid"), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, TellsTheTemperature) {
  const auto client = temperatureClient();
  client->copyServices();
  EXPECT_EQ(client->eventFloat(0, kType, kField), 45.5);
  EXPECT_EQ(client->eventFloat(1, kType, kField), 30);
  EXPECT_EQ(client->eventFloat(2, kType, kField), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, HasNoOtherEventAndNoOtherField) {
  const auto client = temperatureClient();
  client->copyServices();
  EXPECT_EQ(client->eventFloat(0, 25, 25 << 16), std::nullopt);
  EXPECT_EQ(client->eventFloat(0, kType, 25 << 16), std::nullopt);
  EXPECT_EQ(client->eventFloat(0, kType, kField + 1), std::nullopt);
  EXPECT_EQ(client->eventFloat(0, 25, kField), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, APlaceBeyondTheListHasNothing) {
  const auto client = temperatureClient();
  client->copyServices();
  EXPECT_EQ(client->integerProperty(3, "LocationID"), std::nullopt);
  EXPECT_EQ(client->eventFloat(3, kType, kField), std::nullopt);
}

TEST_F(SimulatedHidSensorsTest, WhatAClientHoldsStaysWhenTheStepMovesOn) {
  const auto client = temperatureClient();
  client->copyServices();
  steps_.now().moveTo(2);
  EXPECT_EQ(client->eventFloat(0, kType, kField), 45.5);
  client->copyServices();
  EXPECT_EQ(client->eventFloat(0, kType, kField), 50);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
