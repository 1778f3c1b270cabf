// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <limits>

#include "unit/sampling/sg_power_metrics_fixture.h"

namespace pallimo::sampling {
namespace {

using std::chrono::milliseconds;
using testing::EngineFixture;
using testing::Request;

double periodWithStored(double stored) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", stored);
  return f.create().msSampling();
}

TEST(SGPowerMetricsSettings, MeasuresHalfASecondWhenNothingIsStored) {
  EngineFixture f;
  EXPECT_EQ(f.create().msSampling(), 500);
}

TEST(SGPowerMetricsSettings, AsksForNoGPUFiguresWhenNothingIsStored) {
  EngineFixture f;
  EXPECT_FALSE(f.create().includeGPU());
}

TEST(SGPowerMetricsSettings, CreationWithTheDefaultPeriodClearsNothing) {
  EngineFixture f;
  f.create();
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 0);
}

TEST(SGPowerMetricsSettings, CreationTakesWhatIsStored) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", 2000);
  f.defaults.setBool("gpuFrequency", true);
  f.create();
  EXPECT_EQ(f.engine->msSampling(), 2000);
  EXPECT_TRUE(f.engine->includeGPU());
}

TEST(SGPowerMetricsSettings, CreationWithAnotherPeriodClearsOnce) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", 2000);
  f.create();
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 1);
}

TEST(SGPowerMetricsSettings, PeriodsBelowAHundredMillisecondsAreAHundred) {
  EXPECT_EQ(periodWithStored(50), 100);
  EXPECT_EQ(periodWithStored(99.999), 100);
  EXPECT_EQ(periodWithStored(1e-300), 100);
}

TEST(SGPowerMetricsSettings, PeriodsFromAHundredMillisecondsOnAreTakenAsTheyAre) {
  EXPECT_EQ(periodWithStored(100), 100);
  EXPECT_EQ(periodWithStored(100.5), 100.5);
  EXPECT_EQ(periodWithStored(250), 250);
}

TEST(SGPowerMetricsSettings, PeriodsHaveNoCeiling) { EXPECT_EQ(periodWithStored(1e9), 1e9); }

TEST(SGPowerMetricsSettings, ANegativePeriodIsAHundred) {
  EXPECT_EQ(periodWithStored(-1), 100);
  EXPECT_EQ(periodWithStored(-std::numeric_limits<double>::infinity()), 100);
}

TEST(SGPowerMetricsSettings, AStoredZeroIsTheDefault) {
  EXPECT_EQ(periodWithStored(0), 500);
  EXPECT_EQ(periodWithStored(-0.0), 500);
}

TEST(SGPowerMetricsSettings, APeriodThatIsNotANumberIsTheDefault) {
  EXPECT_EQ(periodWithStored(std::numeric_limits<double>::quiet_NaN()), 500);
}

TEST(SGPowerMetricsSettings, APeriodThatIsNoNumericTextIsTheDefault) {
  EngineFixture f;
  f.defaults.setText("samplingResolution", "fast");
  EXPECT_EQ(f.create().msSampling(), 500);
}

TEST(SGPowerMetricsSettings, FollowsAChangeOnTheThreadThatMadeIt) {
  EngineFixture f;
  f.create();
  f.defaults.setDouble("samplingResolution", 750);
  EXPECT_EQ(f.engine->msSampling(), 750);  // the main queue has not run
}

/// The change is made between two reads of one look, as another thread might; what it found is
/// stored only after it.
TEST(SGPowerMetricsSettings, AChangeInTheMiddleOfALookIsNotUndoneByIt) {
  EngineFixture f;
  f.create();
  bool isChanged = false;
  f.defaults.onRead = [&](std::string_view key) {
    if (key != "samplingResolution" || isChanged) return;
    isChanged = true;
    f.defaults.setBool("gpuFrequency", true);
  };
  f.defaults.setDouble("samplingResolution", 750);
  EXPECT_TRUE(isChanged);
  EXPECT_TRUE(f.engine->includeGPU());
}

TEST(SGPowerMetricsSettings, ClearsFromTheMainQueueNotFromTheChange) {
  EngineFixture f;
  f.create();
  f.defaults.setDouble("samplingResolution", 750);
  EXPECT_EQ(f.clearDataNotices, 0);
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 1);
}

TEST(SGPowerMetricsSettings, StoringTheSamePeriodAgainClearsNothing) {
  EngineFixture f;
  f.create();
  f.defaults.setDouble("samplingResolution", 50);
  f.mainQueue.run();
  EXPECT_EQ(f.engine->msSampling(), 100);
  EXPECT_EQ(f.clearDataNotices, 1);
  f.defaults.setDouble("samplingResolution", 50);
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 1);
}

TEST(SGPowerMetricsSettings, AnotherStoredValueOfTheSamePeriodClearsNothing) {
  EngineFixture f;
  f.create();
  f.defaults.setDouble("samplingResolution", 50);
  f.defaults.setDouble("samplingResolution", 60);
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 1);
}

TEST(SGPowerMetricsSettings, StoringZeroReturnsToTheDefaultAndClearsOnce) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", 50);
  f.create();
  f.mainQueue.run();
  f.clearDataNotices = 0;
  f.defaults.setDouble("samplingResolution", 0);
  f.mainQueue.run();
  EXPECT_EQ(f.engine->msSampling(), 500);
  EXPECT_EQ(f.clearDataNotices, 1);
}

TEST(SGPowerMetricsSettings, RemovingThePeriodReturnsToTheDefault) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", 250);
  f.create();
  f.defaults.remove("samplingResolution");
  EXPECT_EQ(f.engine->msSampling(), 500);
}

TEST(SGPowerMetricsSettings, AChangeOfTheGPUSettingAlonePostsNothing) {
  EngineFixture f;
  f.create();
  f.defaults.setBool("gpuFrequency", true);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 0u);
  EXPECT_TRUE(f.engine->includeGPU());
}

TEST(SGPowerMetricsSettings, TheNextRequestCarriesTheNewGPUSetting) {
  EngineFixture f;
  f.start();
  f.defaults.setBool("gpuFrequency", true);
  f.mainQueue.advance(milliseconds(1000));
  EXPECT_EQ(f.gate->requests(), (std::vector<Request>{{false, 500}, {true, 500}}));
}

TEST(SGPowerMetricsSettings, TheGPUSettingCanBeSwitchedOffAndTakenAway) {
  EngineFixture f;
  f.create();
  f.defaults.setBool("gpuFrequency", true);
  f.defaults.setBool("gpuFrequency", false);
  EXPECT_FALSE(f.engine->includeGPU());
  f.defaults.setBool("gpuFrequency", true);
  f.defaults.remove("gpuFrequency");
  EXPECT_FALSE(f.engine->includeGPU());
}

TEST(SGPowerMetricsSettings, TheNextRequestCarriesTheNewPeriodAndTheTimerKeepsItsPace) {
  EngineFixture f;
  f.start();
  f.mainQueue.advance(milliseconds(600));
  f.defaults.setDouble("samplingResolution", 250);
  f.mainQueue.advance(milliseconds(399));
  EXPECT_EQ(f.gate->requests().size(), 1u);
  f.mainQueue.advance(milliseconds(1));
  EXPECT_EQ(f.gate->requests(), (std::vector<Request>{{false, 500}, {false, 250}}));
}

TEST(SGPowerMetricsSettings, OtherSettingsChangeNothing) {
  EngineFixture f;
  f.create();
  f.defaults.setInteger("temperatureUnit", 1);
  EXPECT_EQ(f.engine->msSampling(), 500);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 0u);
}

TEST(SGPowerMetricsSettings, FollowingTheSettingsDoesNotKeepTheEngineAlive) {
  EngineFixture f;
  f.create();
  const std::weak_ptr<SGPowerMetrics> weak = f.engine;
  f.engine.reset();
  EXPECT_TRUE(weak.expired());
}

TEST(SGPowerMetricsSettings, ChangesAfterTheEnginesEndReachNobody) {
  EngineFixture f;
  f.create();
  f.engine.reset();
  f.defaults.setDouble("samplingResolution", 250);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 0u);
}

TEST(SGPowerMetricsSettings, AClearThatIsStillQueuedEndsWithTheEngine) {
  EngineFixture f;
  f.create();
  f.defaults.setDouble("samplingResolution", 250);
  f.engine.reset();
  f.mainQueue.run();
  EXPECT_EQ(f.clearDataNotices, 0);
}

}  // namespace
}  // namespace pallimo::sampling
