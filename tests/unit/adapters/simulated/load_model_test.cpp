// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/load_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "adapters/simulated/machines.h"

namespace pallimo::adapters::simulated {
namespace {

const MachineDescription& machine() { return builtinMachines().front(); }

/// Every load of the machine that is checked at a moment, whatever it belongs to.
std::vector<UnitLoad> unitsOf(const Load& load) {
  std::vector<UnitLoad> units{load.gpu};
  for (const ClusterLoad& cluster : load.clusters) {
    units.push_back(cluster.whole);
    units.insert(units.end(), cluster.cores.begin(), cluster.cores.end());
  }
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

TEST(LoadModel, HasALoadForEveryClusterAndCore) {
  const Load load = loadAt(machine(), 1, 0);
  ASSERT_EQ(load.clusters.size(), 3u);
  for (const ClusterLoad& cluster : load.clusters) EXPECT_EQ(cluster.cores.size(), 4u);
}

TEST(LoadModel, SharesAddUpToTheActiveTime) {
  for (double time = 0; time < 300; time += 0.7) {
    for (const UnitLoad& load : unitsOf(loadAt(machine(), 1, time))) {
      EXPECT_GE(load.active, 0);
      EXPECT_LE(load.active, 1);
      EXPECT_GE(*std::min_element(load.residency.begin(), load.residency.end()), 0);
      EXPECT_NEAR(std::accumulate(load.residency.begin(), load.residency.end(), 0.0), load.active,
                  1e-12);
    }
  }
}

TEST(LoadModel, AClusterIsAwakeAtLeastAsLongAsItsBusiestCore) {
  for (double time = 0; time < 100; time += 1) {
    for (const ClusterLoad& cluster : loadAt(machine(), 1, time).clusters) {
      for (const UnitLoad& core : cluster.cores) {
        EXPECT_GE(cluster.whole.active, core.active - 1e-12);
      }
    }
  }
}

TEST(LoadModel, EveryFigureChangesEverySecond) {
  for (double time = 0; time < 300; time += 1) {
    const Load now = loadAt(machine(), 1, time);
    const Load next = loadAt(machine(), 1, time + 1);
    EXPECT_NE(std::lround(now.cpuMilliwatts), std::lround(next.cpuMilliwatts)) << time;
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
  const UnitLoad load{.active = 0.4, .residency = {0.1, 0.3}};
  EXPECT_DOUBLE_EQ(load.frequency({1000, 2000}), 1750);
}

TEST(UnitLoad, FrequencyOfOneThatSleptIsTheLowest) {
  const UnitLoad load{.active = 0, .residency = {0, 0}};
  EXPECT_EQ(load.frequency({1000, 2000}), 1000);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
