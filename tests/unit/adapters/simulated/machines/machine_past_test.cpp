// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/machine_past.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {
namespace {

using ports::ProcessorTickCounts;

constexpr std::size_t kUser = 0;
constexpr std::size_t kSystem = 1;
constexpr std::size_t kIdle = 2;
constexpr std::size_t kNice = 3;

const MachineDescription& machine() {
  static const MachineDescription machine = macBookProM2Pro();
  return machine;
}

/// Everything that the past tells at one moment.
struct Moment {
  std::vector<ProcessorTickCounts> ticks;
  std::vector<double> heat;
  bool operator==(const Moment&) const = default;
};

Moment momentOf(MachinePast& past, double time) {
  past.moveTo(time);
  std::vector<double> heat = past.heat().clusters;
  heat.push_back(past.heat().gpu);
  return {past.ticks(), heat};
}

/// The moment as told by a past that was asked nothing else.
Moment momentAt(double time, std::uint64_t seed = 1) {
  MachinePast past(machine(), seed);
  return momentOf(past, time);
}

double sum(const ProcessorTickCounts& counts) {
  return std::accumulate(counts.begin(), counts.end(), 0.0);
}

TEST(MachinePast, StandsAtTheStartAtFirst) {
  const MachinePast past(machine(), 1);
  EXPECT_EQ(past.ticks(), momentAt(0).ticks);
  EXPECT_EQ(past.heat().clusters.size(), 3u);
}

TEST(MachinePast, TimesBeforeTheStartAreTheStart) { EXPECT_EQ(momentAt(-5), momentAt(0)); }

TEST(MachinePast, CountsEveryProcessorFromTheBootOn) {
  const auto atStart = momentAt(0).ticks;
  ASSERT_EQ(atStart.size(), 12u);
  for (const auto& counts : atStart) EXPECT_NEAR(sum(counts), 93'784 * 100, 3);
  for (const auto& counts : momentAt(60).ticks) EXPECT_NEAR(sum(counts), 93'844 * 100, 3);
}

TEST(MachinePast, EveryProcessorHadSomeWorkBeforeTheStart) {
  for (const auto& counts : momentAt(0).ticks) {
    const double busy = 1 - counts[kIdle] / sum(counts);
    EXPECT_GT(busy, 0.02);
    EXPECT_LT(busy, 0.3);
  }
}

TEST(MachinePast, SevenTenthsOfTheBusyTimeAreUserTimeAndNoneIsNice) {
  for (const auto& counts : momentAt(100).ticks) {
    const double busy = counts[kUser] + counts[kSystem];
    EXPECT_NEAR(counts[kUser] / busy, 0.7, 0.001);
    EXPECT_EQ(counts[kNice], 0u);
  }
}

TEST(MachinePast, TicksNeverRunBackwards) {
  MachinePast past(machine(), 1);
  auto before = momentOf(past, 0).ticks;
  for (int i = 1; i < 3'000; ++i) {
    const auto now = momentOf(past, i * 0.037).ticks;
    for (std::size_t cpu = 0; cpu < now.size(); ++cpu) {
      for (std::size_t state = 0; state < 4; ++state) {
        ASSERT_GE(now[cpu][state], before[cpu][state]) << i;
      }
    }
    before = now;
  }
}

TEST(MachinePast, TicksAreTheIntegralOfTheLoad) {
  const auto from = momentAt(10).ticks;
  const auto to = momentAt(70).ticks;
  double expected = 0;
  for (int i = 0; i < 6'000; ++i) {
    expected += loadAt(machine(), 1, 10 + 0.01 * i).clusters[1].cores[2] * 0.01;
  }
  const std::size_t cpu = 4 + 2;  // the third core of the second cluster
  const double busy = (to[cpu][kUser] + to[cpu][kSystem]) - (from[cpu][kUser] + from[cpu][kSystem]);
  EXPECT_NEAR(busy / 100, expected, 0.03 * expected + 0.03);
}

TEST(TicksOf, CountsHundredthsOfASecond) {
  EXPECT_EQ(ticksOf(0), 0u);
  EXPECT_EQ(ticksOf(93'784), 9'378'400u);
  EXPECT_EQ(ticksOf(0.019), 1u);
}

TEST(TicksOf, WrapsAtThirtyTwoBits) {
  EXPECT_EQ(ticksOf(42'949'672.955), 4'294'967'295u);
  EXPECT_EQ(ticksOf(42'949'673), 4u);
}

TEST(MachinePast, TheSameTimeGivesTheSameAnswerWhateverWasAskedBefore) {
  const Moment direct = momentAt(33.3);
  MachinePast past(machine(), 1);
  for (double time = 0.1; time < 33; time += 0.73) momentOf(past, time);
  EXPECT_EQ(momentOf(past, 33.3), direct);
  EXPECT_EQ(momentOf(past, 33.3), direct);
}

TEST(MachinePast, GoesBackToAnEarlierTime) {
  MachinePast past(machine(), 1);
  momentOf(past, 50);
  EXPECT_EQ(momentOf(past, 12.6), momentAt(12.6));
  EXPECT_EQ(momentOf(past, 12.5), momentAt(12.5));
  EXPECT_EQ(momentOf(past, 0), momentAt(0));
}

constexpr double kHour = 3'600;

/// Seconds that the first processor's counters grew by.
double counted(const Moment& from, const Moment& to) {
  return (sum(to.ticks.front()) - sum(from.ticks.front())) / 100;
}

TEST(MachinePast, AnHourAtOnceIsCountedInFull) {
  EXPECT_NEAR(counted(momentAt(0), momentAt(kHour)), kHour, 0.05);
  MachinePast inSteps(machine(), 1);
  for (double time = 0; time < kHour; time += 400) inSteps.moveTo(time);
  EXPECT_EQ(momentOf(inSteps, kHour), momentAt(kHour));
}

TEST(MachinePast, ALongerLeapIsASleepThatEndsAMinuteBefore) {
  const double leap = kHour + 0.25;
  EXPECT_NEAR(counted(momentAt(0), momentAt(leap)), 60, 0.05);
  EXPECT_NEAR(counted(momentAt(0), momentAt(1e9)), 60, 0.3);
}

TEST(MachinePast, ASleepIsMeasuredFromTheMomentBefore) {
  MachinePast past(machine(), 1);
  const Moment before = momentOf(past, 2 * kHour);
  EXPECT_NEAR(counted(before, momentOf(past, 3 * kHour)), kHour, 0.05);
  const Moment asleep = momentOf(past, 3 * kHour + 0.24);
  EXPECT_NEAR(counted(asleep, momentOf(past, 5 * kHour)), 60, 0.05) << "also from within a cell";
}

TEST(MachinePast, NoTickFallsThroughASleep) {
  for (double from = 0; from < 30; from += 0.37) {
    MachinePast past(machine(), 1);
    const auto before = momentOf(past, from).ticks;
    const auto after = momentOf(past, from + 2 * kHour).ticks;
    for (std::size_t cpu = 0; cpu < after.size(); ++cpu) {
      for (std::size_t state = 0; state < 4; ++state) {
        ASSERT_GE(after[cpu][state], before[cpu][state]) << from;
      }
    }
  }
}

TEST(MachinePast, AfterASleepTheMinuteThatItWasAwakeIsThatOfTheLoad) {
  const double moment = 2 * kHour;
  const auto from = momentAt(0).ticks;
  const auto to = momentAt(moment).ticks;
  double expected = 0;
  for (int i = 0; i < 6'000; ++i) {
    expected += loadAt(machine(), 1, moment - 60 + 0.01 * i).clusters[0].cores[1] * 0.01;
  }
  const double busy = (to[1][kUser] + to[1][kSystem]) - (from[1][kUser] + from[1][kSystem]);
  EXPECT_NEAR(busy / 100, expected, 0.03 * expected + 0.03);
}

TEST(MachinePast, TheHeatAfterASleepIsThatOfAMachineThatWasNeverAsleep) {
  MachinePast awake(machine(), 1);
  for (double time = 0; time < 2 * kHour; time += kHour / 2) awake.moveTo(time);
  const auto warm = momentOf(awake, 2 * kHour).heat;
  const auto rested = momentAt(2 * kHour).heat;
  ASSERT_EQ(rested.size(), warm.size());
  for (std::size_t i = 0; i < warm.size(); ++i) EXPECT_NEAR(rested[i], warm[i], 1e-4);
}

TEST(MachinePast, TheHeatAfterASleepDoesNotDependOnWhenItBegan) {
  MachinePast late(machine(), 1);
  late.moveTo(100);
  EXPECT_EQ(momentOf(late, 9'000.3).heat, momentAt(9'000.3).heat);
}

TEST(MachinePast, DiffersFromSeedToSeed) { EXPECT_NE(momentAt(30, 1), momentAt(30, 2)); }

TEST(MachinePast, HeatHasNoJumps) {
  MachinePast past(machine(), 1);
  auto before = momentOf(past, 0).heat;
  for (double time = 0.05; time < 120; time += 0.05) {
    const auto now = momentOf(past, time).heat;
    for (std::size_t i = 0; i < now.size(); ++i) ASSERT_NEAR(now[i], before[i], 1.2) << time;
    before = now;
  }
}

TEST(MachinePast, AMachineThatRestsIsLukewarm) {
  MachinePast past(machine(), 1);
  double coolest = 1'000;
  for (int second = 0; second < 600; ++second) {
    past.moveTo(second);
    coolest = std::min(coolest, past.heat().clusters[1]);
  }
  EXPECT_GT(coolest, 30);
  EXPECT_LT(coolest, 45);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
