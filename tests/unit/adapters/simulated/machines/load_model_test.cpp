// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/load_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {
namespace {

const MachineDescription& machine() {
  static const MachineDescription machine = macBookProM2Pro();
  return machine;
}

/// Everything that has a clock, at one moment.
std::vector<UnitLoad> unitsOf(const Load& load) {
  std::vector<UnitLoad> units{load.gpu};
  for (const ClusterLoad& cluster : load.clusters) units.push_back(cluster.whole);
  return units;
}

double highestFrequency(double time) {
  const Load load = loadAt(machine(), 1, time);
  double highest = 0;
  for (std::size_t i = 0; i < load.clusters.size(); ++i) {
    highest =
        std::max(highest, load.clusters[i].whole.frequency(machine().clusters[i].frequencies));
  }
  return highest;
}

/// How busy a cluster's cores are on average.
double busyShare(const ClusterLoad& cluster) {
  return std::accumulate(cluster.cores.begin(), cluster.cores.end(), 0.0) /
         static_cast<double>(cluster.cores.size());
}

/// How busy each cluster of the machine is on average over some moments of that demand.
std::vector<double> busyClusters(const MachineDescription& machine, double demand) {
  std::vector<double> shares(machine.clusters.size(), 0.0);
  for (double time = 0; time < 100; time += 1) {
    const Load load = loadFor(machine, 1, time, demand);
    for (std::size_t i = 0; i < shares.size(); ++i) shares[i] += busyShare(load.clusters[i]) / 100;
  }
  return shares;
}

TEST(LoadModel, HasALoadForEveryClusterAndCore) {
  const Load load = loadAt(machine(), 1, 0);
  ASSERT_EQ(load.clusters.size(), 3u);
  for (const ClusterLoad& cluster : load.clusters) EXPECT_EQ(cluster.cores.size(), 4u);
}

TEST(LoadModel, SharesAddUpToTheBusyTime) {
  for (double time = 0; time < 300; time += 0.7) {
    for (const UnitLoad& load : unitsOf(loadAt(machine(), 1, time))) {
      EXPECT_GE(load.active, 0);
      EXPECT_LE(load.active, 1);
      EXPECT_GE(*std::min_element(load.shares.begin(), load.shares.end()), 0);
      EXPECT_NEAR(std::accumulate(load.shares.begin(), load.shares.end(), 0.0), 1, 1e-12);
    }
  }
}

TEST(LoadModel, AClusterIsAwakeAtLeastAsLongAsItsBusiestCore) {
  for (double time = 0; time < 100; time += 1) {
    for (const ClusterLoad& cluster : loadAt(machine(), 1, time).clusters) {
      for (const double active : cluster.cores) {
        EXPECT_GE(active, 0);
        EXPECT_GE(cluster.whole.active, active - 1e-12);
      }
    }
  }
}

TEST(LoadModel, CpuPowerIsThatOfItsClusters) {
  for (double time = 0; time < 100; time += 1) {
    const Load load = loadAt(machine(), 1, time);
    double sum = 0;
    for (const ClusterLoad& cluster : load.clusters) sum += cluster.milliwatts;
    EXPECT_DOUBLE_EQ(load.cpuMilliwatts, sum);
  }
}

TEST(LoadModel, PackagePowerIsThatOfCpuGpuAndNeuralEngine) {
  Load load;
  load.cpuMilliwatts = 1;
  load.gpuMilliwatts = 20;
  load.aneMilliwatts = 300;
  EXPECT_EQ(load.packageMilliwatts(), 321);
}

TEST(LoadModel, DemandIsAShare) {
  for (double time = 0; time < 3'000; time += 0.5) {
    EXPECT_GT(demandAt(1, time), 0);
    EXPECT_LT(demandAt(1, time), 1);
  }
}

TEST(LoadModel, TheLoadOfAMomentIsThatOfItsDemand) {
  const Load load = loadAt(machine(), 4, 17.5);
  EXPECT_EQ(load.demand, demandAt(4, 17.5));
  EXPECT_EQ(load.cpuMilliwatts, loadFor(machine(), 4, 17.5, load.demand).cpuMilliwatts);
}

TEST(LoadModel, LightWorkStaysOnTheEfficiencyCores) {
  const auto shares = busyClusters(machine(), 0.05);
  EXPECT_GT(shares[0], 0.1);
  EXPECT_LT(shares[1], 0.02);
  EXPECT_LT(shares[2], 0.02);
}

TEST(LoadModel, PerformanceClustersWakeOneAfterTheOther) {
  const auto shares = busyClusters(macStudioM2Ultra(), 0.35);  // E0, P0, P1, E1, P2, P3
  EXPECT_NEAR(shares[0], shares[3], 0.05);
  EXPECT_GT(shares[1], 0.2);
  EXPECT_LT(shares[2], shares[1] - 0.1);
  EXPECT_LT(shares[4], shares[2] - 0.05);
  EXPECT_LT(shares[5], 0.02);
}

TEST(LoadModel, SuperCoresTakeTheWorkOfAMachineWithoutEfficiencyCores) {
  const auto little = busyClusters(macBookProM5Pro(), 0.05);  // P0, P1, S
  EXPECT_GT(little[0], 0.1);
  EXPECT_GT(little[1], 0.1);
  EXPECT_LT(little[2], 0.02);
  EXPECT_GT(busyClusters(macBookProM5Pro(), 0.8)[2], 0.6);
}

TEST(LoadModel, SleepsInNoMinuteAndRestsInNone) {
  for (double minute = 0; minute < 1'800; minute += 60) {
    double lowest = 1;
    double highest = 0;
    for (double second = 0; second < 60; second += 0.5) {
      const double demand = demandAt(1, minute + second);
      lowest = std::min(lowest, demand);
      highest = std::max(highest, demand);
    }
    EXPECT_LT(lowest, 0.4) << minute;
    EXPECT_GT(highest, 0.15) << minute;
  }
}

TEST(LoadModel, EveryFigureChangesEverySecond) {
  for (double time = 0; time < 300; time += 1) {
    const Load now = loadAt(machine(), 1, time);
    const Load next = loadAt(machine(), 1, time + 1);
    EXPECT_NE(now.cpuMilliwatts, next.cpuMilliwatts) << time;
    EXPECT_NE(now.gpuMilliwatts, next.gpuMilliwatts) << time;
    EXPECT_NE(highestFrequency(time), highestFrequency(time + 1)) << time;
  }
}

TEST(LoadModel, WorksInBursts) {
  double lowest = 1e9;
  double highest = 0;
  for (double time = 0; time < 300; time += 1) {
    const double power = loadAt(machine(), 1, time).cpuMilliwatts;
    lowest = std::min(lowest, power);
    highest = std::max(highest, power);
  }
  EXPECT_LT(lowest, 1'000);
  EXPECT_GT(highest, 15'000);
}

TEST(LoadModel, StaysWithinTheMachinesPeakPower) {
  for (double time = 0; time < 3'000; time += 1) {
    const Load load = loadAt(machine(), 1, time);
    EXPECT_LT(load.cpuMilliwatts, 4 * 420 + 8 * 4300 + 200);
    EXPECT_LT(load.gpuMilliwatts, 21'100);
    EXPECT_LE(load.aneMilliwatts, 3'800);
  }
}

TEST(LoadModel, TheNeuralEngineRestsMostOfTheTime) {
  int resting = 0;
  int busy = 0;
  for (double time = 0; time < 1'000; time += 1) {
    (loadAt(machine(), 1, time).aneMilliwatts == 0 ? resting : busy) += 1;
  }
  EXPECT_GT(resting, 600);
  EXPECT_GT(busy, 50);
}

TEST(LoadModel, IsTheSameForTheSameSeedAndTime) {
  EXPECT_EQ(loadAt(machine(), 7, 12.5).cpuMilliwatts, loadAt(machine(), 7, 12.5).cpuMilliwatts);
}

TEST(LoadModel, DiffersFromSeedToSeed) {
  EXPECT_NE(loadAt(machine(), 7, 12.5).cpuMilliwatts, loadAt(machine(), 8, 12.5).cpuMilliwatts);
}

TEST(UnitLoad, FrequencyIsTheMeanOfTheBusyTime) {
  const UnitLoad load{.active = 0.4, .shares = {0.25, 0.75}};
  EXPECT_DOUBLE_EQ(load.frequency({1000, 2000}), 1750);
}

TEST(UnitLoad, FrequencyOfOneThatSleptIsTheLowest) {
  const UnitLoad load{.active = 0, .shares = {0.5, 0.5}};
  EXPECT_EQ(load.frequency({1000, 2000}), 1000);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
