// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The failures that the program does not live through, and the one that it waits for without end.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scenarios/fault_expectation.h"
#include "scenarios/faulty_mac.h"
#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

/// The program has started and a fault of the world comes.
void startAndThen(const std::function<void(FaultyWorld&)>& set, FaultyMacKind kind) {
  FaultyWorld world = healthyWorld(kind);
  FaultyMac mac(world);
  mac.start();
  set(world);
  mac.change(world);
  mac.second();
}

void startIn(const std::function<void(FaultyWorld&)>& set) {
  FaultyWorld world = healthyWorld(FaultyMacKind::smc);
  set(world);
  FaultyMac mac(world);
  mac.start();
}

class DeliberateStopDeathTest : public testing::Test {
 protected:
  DeliberateStopDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(DeliberateStopDeathTest, AChipsNameThatCanNoLongerBeReadStopsTheProgram) {
  EXPECT_DEATH(
      startAndThen([](FaultyWorld& world) { world.chip = std::nullopt; }, FaultyMacKind::smc),
      "The kernel variable machdep\\.cpu\\.brand_string can't be read\\.");
}

TEST_F(DeliberateStopDeathTest, AModelThatCannotBeReadStopsTheProgramAtItsStart) {
  EXPECT_DEATH(startIn([](FaultyWorld& world) { world.model = std::nullopt; }),
               "The kernel variable hw\\.model can't be read\\.");
}

TEST_F(DeliberateStopDeathTest, AMachineThatMakesNoHidClientStopsTheProgram) {
  EXPECT_DEATH(
      startAndThen([](FaultyWorld& world) { world.hidMakesClients = false; }, FaultyMacKind::hid),
      "The HID event system made no client\\.");
}

TEST_F(DeliberateStopDeathTest, AHelperThatDiesWhileNoAuthorisationCanBeHadStopsTheProgram) {
  const auto loseTheHelper = [] {
    FaultyWorld world;
    FaultyMac mac(world);
    mac.start();
    world.authorizes = false;
    mac.change(world);
    mac.helperDies();
    mac.second();
  };
  EXPECT_DEATH(loseTheHelper(), "Authorization not acquired\\.");
}

TEST(DeliberateStop, AnUnreadableChipsNameStopsNothingWhereTheHidSensorsAreRead) {
  FaultyWorld world = healthyWorld(FaultyMacKind::hid);
  FaultyMac mac(world);
  mac.start();
  world.chip = std::nullopt;
  mac.change(world);
  EXPECT_EQ(mac.second().rows.size(), 1u);
}

TEST(DeliberateStop, AnotherProcessorEndsTheRunAndAsksNoHelper) {
  FaultyWorld world;
  world.cpuType = std::nullopt;
  FaultyMac mac(world);
  EXPECT_EQ(mac.start(), std::vector<std::string>{});
  EXPECT_EQ(mac.ending(),
            "3: this app is only for Apple silicon; it does not work on this processor");
}

TEST(DeliberateStop, AConnectionThatIsMadeWithoutAProxyStaysInUseAndEndsTheRun) {
  FaultyWorld world;
  world.hasProxies = false;
  FaultyMac mac(world);
  mac.start();
  mac.change(FaultyWorld());
  for (int second = 0; second < 6; ++second) EXPECT_EQ(mac.second().rows.size(), 0u);
  EXPECT_EQ(mac.ending(), kStillNotUsable);
}

TEST(EndlessRetry, AnAcceleratorIsReadUntilItAnswersAndTheSampleIsWhole) {
  FaultyWorld world;
  FaultyMac mac(world);
  mac.start();
  world.acceleratorReadFailures = 200'000;
  mac.change(world);
  const std::vector<std::string> rows = mac.second().rows;
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_TRUE(rows[0].ends_with(", 50.000, 25.000, 75.000, 37.000")) << rows[0];
}

TEST(EndlessRetry, AnAcceleratorIsReadUntilItAnswersAtTheStartToo) {
  FaultyWorld world;
  world.acceleratorReadFailures = 200'000;
  FaultyMac mac(world);
  EXPECT_EQ(mac.start().size(), 1u);
  EXPECT_EQ(mac.title(), "Apple M2 Pro, Apple M2 Pro, 4, 6, 16");
}

}  // namespace
}  // namespace pallimo::scenarios
