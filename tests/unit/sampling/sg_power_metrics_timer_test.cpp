// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "unit/sampling/sg_power_metrics_fixture.h"

namespace pallimo::sampling {
namespace {

using std::chrono::milliseconds;
using testing::EngineFixture;
using testing::Request;

TEST(SGPowerMetricsTimer, CreationStartsNothing) {
  EngineFixture f;
  f.create();
  f.mainQueue.advance(milliseconds(5000));
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
  EXPECT_TRUE(f.gate->requests().empty());
}

TEST(SGPowerMetricsTimer, StartsFromTheMainQueue) {
  EngineFixture f;
  f.create().setAuthorized(true);
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
  f.mainQueue.run();
  EXPECT_TRUE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
}

TEST(SGPowerMetricsTimer, SendsTheFirstRequestAtOnce) {
  EngineFixture f;
  f.start();
  EXPECT_EQ(f.gate->requests(), (std::vector<Request>{{false, 500}}));
}

TEST(SGPowerMetricsTimer, SendsTheSecondRequestAfterOneSecond) {
  EngineFixture f;
  f.start();
  f.mainQueue.advance(milliseconds(999));
  EXPECT_EQ(f.gate->requests().size(), 1u);
  f.mainQueue.advance(milliseconds(1));
  EXPECT_EQ(f.gate->requests().size(), 2u);
}

TEST(SGPowerMetricsTimer, SendsOneRequestASecondWithoutAnyAnswer) {
  EngineFixture f;
  f.start();
  f.mainQueue.advance(milliseconds(10'000));
  EXPECT_EQ(f.gate->requests().size(), 11u);
}

TEST(SGPowerMetricsTimer, SendsOneRequestASecondEvenWhenARunTakesTwo) {
  EngineFixture f;
  f.defaults.setDouble("samplingResolution", 2000);
  f.start();
  f.mainQueue.advance(milliseconds(3000));
  EXPECT_EQ(f.gate->requests(), std::vector<Request>(4, Request{false, 2000}));
}

TEST(SGPowerMetricsTimer, ASecondStartFindsTheTimerAndDoesNothing) {
  EngineFixture f;
  f.start();
  f.engine->setAuthorized(true);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 0u);
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
  EXPECT_EQ(f.gate->requests().size(), 1u);
}

TEST(SGPowerMetricsTimer, TwoStartsBeforeTheQueueRunsLeaveOneTimerAndTwoImmediateRequests) {
  EngineFixture f;
  f.create();
  f.engine->setAuthorized(true);
  f.engine->setAuthorized(true);
  f.mainQueue.run();
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
  EXPECT_EQ(f.gate->requests().size(), 2u);
  f.mainQueue.advance(milliseconds(1000));
  EXPECT_EQ(f.gate->requests().size(), 3u);
}

TEST(SGPowerMetricsTimer, StopsFromTheMainQueue) {
  EngineFixture f;
  f.start().setAuthorized(false);
  EXPECT_TRUE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
  f.mainQueue.run();
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
}

TEST(SGPowerMetricsTimer, SendsNothingAfterAStop) {
  EngineFixture f;
  f.start().setAuthorized(false);
  f.mainQueue.advance(milliseconds(5000));
  EXPECT_EQ(f.gate->requests().size(), 1u);
}

TEST(SGPowerMetricsTimer, AStopIsQueuedEvenWhileIdleAndDoesNoHarm) {
  EngineFixture f;
  f.create().setAuthorized(false);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 1u);
  f.mainQueue.run();
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
}

TEST(SGPowerMetricsTimer, AStopAfterAStartThatStillWaitsWins) {
  EngineFixture f;
  f.create();
  f.engine->setAuthorized(true);
  f.engine->setAuthorized(false);
  f.mainQueue.run();
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
}

TEST(SGPowerMetricsTimer, AStartIsDroppedWhileTheTimerStandsEvenWithAStopWaiting) {
  EngineFixture f;
  f.start();
  f.engine->setAuthorized(false);
  f.engine->setAuthorized(true);
  f.mainQueue.run();
  EXPECT_FALSE(f.engine->isAuthorized());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
}

TEST(SGPowerMetricsTimer, StopTimerEndsTheTimerAtOnce) {
  EngineFixture f;
  f.start().stopTimer();
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
  EXPECT_FALSE(f.engine->isAuthorized());
  f.mainQueue.advance(milliseconds(5000));
  EXPECT_EQ(f.gate->requests().size(), 1u);
}

TEST(SGPowerMetricsTimer, StopTimerWhileIdleDoesNothing) {
  EngineFixture f;
  f.create().stopTimer();
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
  EXPECT_EQ(f.mainQueue.queuedTasks(), 0u);
}

TEST(SGPowerMetricsTimer, StartsAgainAfterStopTimer) {
  EngineFixture f;
  f.start().stopTimer();
  f.engine->setAuthorized(true);
  f.mainQueue.run();
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
  EXPECT_EQ(f.gate->requests().size(), 2u);
}

TEST(SGPowerMetricsTimer, StartsAgainAfterAStop) {
  EngineFixture f;
  f.start().setAuthorized(false);
  f.mainQueue.run();
  f.engine->setAuthorized(true);
  f.mainQueue.run();
  EXPECT_TRUE(f.engine->isAuthorized());
  EXPECT_EQ(f.gate->requests().size(), 2u);
}

TEST(SGPowerMetricsTimer, TicksSendNothingWhileTheManagerIsNotAuthorised) {
  EngineFixture f;
  f.start();
  f.gate->setAuthorized(false);
  f.mainQueue.advance(milliseconds(3000));
  EXPECT_EQ(f.gate->requests().size(), 1u);
}

TEST(SGPowerMetricsTimer, TicksSendNothingWhileTheHelperIsBeingRemoved) {
  EngineFixture f;
  f.start();
  f.gate->setRequestedToUninstall(true);
  f.mainQueue.advance(milliseconds(3000));
  EXPECT_EQ(f.gate->requests().size(), 1u);
}

TEST(SGPowerMetricsTimer, TheFirstRequestMindsTheGateToo) {
  EngineFixture f;
  f.gate->setAuthorized(false);
  f.start();
  EXPECT_TRUE(f.gate->requests().empty());
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
}

TEST(SGPowerMetricsTimer, TheTimerRunsOnBehindAClosedGate) {
  EngineFixture f;
  f.start();
  f.gate->setRequestedToUninstall(true);
  f.mainQueue.advance(milliseconds(2000));
  f.gate->setRequestedToUninstall(false);
  f.mainQueue.advance(milliseconds(1000));
  EXPECT_EQ(f.gate->requests().size(), 2u);
}

TEST(SGPowerMetricsTimer, AManagerThatIsGoneIsAClosedGate) {
  EngineFixture f;
  f.start();
  f.gate.reset();
  f.mainQueue.advance(milliseconds(1000));
  EXPECT_EQ(f.mainQueue.liveTimers(), 1u);
}

TEST(SGPowerMetricsTimer, QueuedStartsAndStopsDoNotKeepTheEngineAlive) {
  EngineFixture f;
  f.create();
  f.engine->setAuthorized(true);
  f.engine->setAuthorized(false);
  const std::weak_ptr<SGPowerMetrics> weak = f.engine;
  f.engine.reset();
  EXPECT_TRUE(weak.expired());
  f.mainQueue.run();
  EXPECT_TRUE(f.gate->requests().empty());
}

TEST(SGPowerMetricsTimer, TheTimerEndsWithTheEngineAndDoesNotKeepItAlive) {
  EngineFixture f;
  f.start();
  const std::weak_ptr<SGPowerMetrics> weak = f.engine;
  f.engine.reset();
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(f.mainQueue.liveTimers(), 0u);
}

}  // namespace
}  // namespace pallimo::sampling
