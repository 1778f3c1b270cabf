// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/cpu_tick_sampling.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "fakes/fake_processor_ticks.h"

namespace pallimo::modules {
namespace {

/// A snapshot of as many processors as the test names.
TickSnapshot snapshotOf(const fakes::FakeProcessorTicks::Counts& counts) {
  fakes::FakeProcessorTicks ticks;
  ticks.set(counts);
  return takeTickSnapshot(ticks);
}

TEST(TakeTickSnapshot, NumbersTheProcessorsInTheKernelsOrderFromZero) {
  const TickSnapshot snapshot = snapshotOf({{}, {}, {}});
  ASSERT_EQ(snapshot.size(), 3u);
  EXPECT_EQ(snapshot[0].cpuNum, 0);
  EXPECT_EQ(snapshot[1].cpuNum, 1);
  EXPECT_EQ(snapshot[2].cpuNum, 2);
}

TEST(TakeTickSnapshot, TheCountersAreUserSystemIdleAndNice) {
  const CPUUnitInfo info = snapshotOf({{1, 2, 3, 4}})[0];
  EXPECT_EQ(info.user, 1);
  EXPECT_EQ(info.system, 2);
  EXPECT_EQ(info.idle, 3);
  EXPECT_EQ(info.nice, 4);
}

TEST(TakeTickSnapshot, CountersAreSigned) {
  EXPECT_EQ(snapshotOf({{0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0}}),
            (TickSnapshot{{0, 2147483647, -2147483648.0, -1, 0}}));
}

TEST(TakeTickSnapshot, IsEmptyWhenTheKernelDoesNotAnswer) {
  fakes::FakeProcessorTicks ticks;
  ticks.set({{1, 2, 3, 4}});
  ticks.fail();
  EXPECT_EQ(takeTickSnapshot(ticks), TickSnapshot());
}

TEST(TakeTickSnapshot, IsEmptyWithoutProcessors) { EXPECT_EQ(snapshotOf({}), TickSnapshot()); }

TEST(TickDeltas, AreWhatWasCountedInBetween) {
  EXPECT_EQ(tickDeltas(TickSnapshot{{0, 1, 2, 3, 4}, {1, 10, 20, 30, 40}},
                       {{0, 2, 4, 6, 8}, {1, 110, 120, 130, 140}}),
            (TickSnapshot{{0, 1, 2, 3, 4}, {1, 100, 100, 100, 100}}));
}

TEST(TickDeltas, MatchByPlaceAndNotByNumber) {
  EXPECT_EQ(tickDeltas(TickSnapshot{{7, 1, 1, 1, 1}, {3, 5, 5, 5, 5}},
                       {{3, 2, 2, 2, 2}, {7, 10, 10, 10, 10}}),
            (TickSnapshot{{0, 1, 1, 1, 1}, {1, 5, 5, 5, 5}}));
}

TEST(TickDeltas, WithoutAnEarlierSnapshotAreTheCountersSinceBoot) {
  const TickSnapshot current = {{5, 1, 2, 3, 4}};
  EXPECT_EQ(tickDeltas(std::nullopt, current), current);
}

TEST(TickDeltas, OfAnotherNumberOfProcessorsAreTheCountersSinceBoot) {
  const TickSnapshot one = {{0, 1, 2, 3, 4}};
  const TickSnapshot two = {{0, 2, 4, 6, 8}, {1, 1, 1, 1, 1}};
  EXPECT_EQ(tickDeltas(one, two), two);
  EXPECT_EQ(tickDeltas(two, one), one);
  EXPECT_EQ(tickDeltas(TickSnapshot(), one), one);
}

TEST(TickDeltas, OfTwoEmptySnapshotsAreEmpty) {
  EXPECT_EQ(tickDeltas(TickSnapshot(), {}), TickSnapshot());
}

TEST(TickDeltas, AreTakenAsTheyComeWhenACounterTurnsNegative) {
  const auto before = snapshotOf({{0x7FFFFFFF, 0, 0, 0}});
  const auto now = snapshotOf({{0x80000009, 0, 0, 0}});
  EXPECT_EQ(tickDeltas(before, now)[0].user, 10 - 4294967296.0);
}

TEST(TickDeltas, OfNegativeCountersAreRight) {
  const auto before = snapshotOf({{0x80000000, 0, 0, 0}});
  const auto now = snapshotOf({{0x80000009, 0, 0, 0}});
  EXPECT_EQ(tickDeltas(before, now)[0].user, 9);
}

TEST(TickAverage, IsTheMeanOfEachCounter) {
  EXPECT_EQ(tickAverage({{0, 1, 2, 3, 4}, {1, 4, 8, 16, 32}}), (CPUUnitInfo{-1, 2.5, 5, 9.5, 18}));
}

TEST(TickAverage, OfNothingIsNothing) { EXPECT_EQ(tickAverage({}), (CPUUnitInfo{-1, 0, 0, 0, 0})); }

TEST(ClusterTickAverages, EachClusterHasTheMeanOfItsProcessors) {
  const TickSnapshot list = {{0, 1, 2, 3, 4}, {1, 3, 4, 5, 6}, {2, 10, 20, 30, 40}};
  const auto averages = clusterTickAverages(list, {{"E-Cluster", {0, 1}}, {"P-Cluster", {2}}});
  ASSERT_EQ(averages.size(), 2u);
  EXPECT_EQ(averages.at("E-Cluster"), (CPUUnitInfo{-1, 2, 3, 4, 5}));
  EXPECT_EQ(averages.at("P-Cluster"), (CPUUnitInfo{-1, 10, 20, 30, 40}));
}

TEST(ClusterTickAverages, FollowTheProcessorsNumbersAndNotTheirPlaces) {
  const auto averages =
      clusterTickAverages({{4, 1, 1, 1, 1}, {0, 9, 9, 9, 9}}, {{"E-Cluster", {0}}});
  EXPECT_EQ(averages.at("E-Cluster"), (CPUUnitInfo{-1, 9, 9, 9, 9}));
}

TEST(ClusterTickAverages, TheFirstRecordOfANumberCounts) {
  const auto averages =
      clusterTickAverages({{0, 1, 1, 1, 1}, {0, 9, 9, 9, 9}}, {{"E-Cluster", {0}}});
  EXPECT_EQ(averages.at("E-Cluster"), (CPUUnitInfo{-1, 1, 1, 1, 1}));
}

TEST(ClusterTickAverages, TheFirstRecordOfANumberCountsAlsoWhereTheSecondStandsAtItsPlace) {
  const auto averages =
      clusterTickAverages({{1, 1, 1, 1, 1}, {1, 9, 9, 9, 9}}, {{"E-Cluster", {1}}});
  EXPECT_EQ(averages.at("E-Cluster"), (CPUUnitInfo{-1, 1, 1, 1, 1}));
}

TEST(ClusterTickAverages, ANumberThatIsNoPlaceIsNoProcessor) {
  constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
  const auto averages =
      clusterTickAverages({{0, 30, 20, 100, 50}}, {{"P-Cluster", {kLowest, -1, 1, kHighest}}});
  EXPECT_EQ(averages.at("P-Cluster"), (CPUUnitInfo{-1, 0, 0, 0, 0}));
}

TEST(ClusterTickAverages, AProcessorThatTheSnapshotLacksLowersTheAveragesAndNotTheFraction) {
  const auto averages = clusterTickAverages({{0, 30, 20, 100, 50}}, {{"P-Cluster", {0, 8}}});
  EXPECT_EQ(averages.at("P-Cluster"), (CPUUnitInfo{-1, 15, 10, 50, 25}));
  EXPECT_EQ(busyFraction(averages.at("P-Cluster")), 0.5);
}

TEST(ClusterTickAverages, AProcessorListedTwiceCountsTwice) {
  const auto averages =
      clusterTickAverages({{0, 9, 9, 9, 9}, {1, 0, 0, 0, 0}}, {{"P-Cluster", {0, 0, 1}}});
  EXPECT_EQ(averages.at("P-Cluster"), (CPUUnitInfo{-1, 6, 6, 6, 6}));
}

TEST(ClusterTickAverages, AnEmptyClusterHasNoTicks) {
  const auto averages = clusterTickAverages({{0, 1, 2, 3, 4}}, {{"E-Cluster", {}}});
  EXPECT_EQ(averages.at("E-Cluster"), (CPUUnitInfo{-1, 0, 0, 0, 0}));
}

TEST(ClusterTickAverages, OfNoClustersAreNone) {
  EXPECT_TRUE(clusterTickAverages({{0, 1, 2, 3, 4}}, {}).empty());
}

TEST(BusyFraction, IsWhatIsNotIdle) {
  EXPECT_EQ(busyFraction({0, 10, 20, 50, 20}), 0.5);
  EXPECT_EQ(busyFraction({0, 0, 0, 50, 0}), 0);
  EXPECT_EQ(busyFraction({0, 50, 0, 0, 0}), 1);
  EXPECT_EQ(busyFraction({0, 0, 50, 0, 0}), 1);
  EXPECT_EQ(busyFraction({0, 0, 0, 0, 50}), 1);
}

TEST(BusyFraction, WithoutTicksIsNotANumber) { EXPECT_TRUE(std::isnan(busyFraction({}))); }

TEST(BusyFraction, AddsUserAndSystemThenIdleThenNice) {
  // Figures whose sum has another last bit when they are added in another order.
  const double whole = 1.8 + (1.1 + (1.7 + 3.4));
  EXPECT_EQ(busyFraction({0, 1.7, 3.4, 1.1, 1.8}), 1 - 1.1 / whole);
}

}  // namespace
}  // namespace pallimo::modules
