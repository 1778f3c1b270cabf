// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/load_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "adapters/simulated/load_curve.h"

namespace pallimo::adapters::simulated {

namespace {

// Channels of chance. A core's own is kFirstCore + its number.
constexpr std::uint64_t kSlowWork = 1;
constexpr std::uint64_t kQuickWork = 2;
constexpr std::uint64_t kWorkBursts = 3;
constexpr std::uint64_t kGpuWork = 4;
constexpr std::uint64_t kGpuFlicker = 5;
constexpr std::uint64_t kGpuBursts = 6;
constexpr std::uint64_t kAneBursts = 7;
constexpr std::uint64_t kAneFlicker = 9;
constexpr std::uint64_t kFirstCore = 100;

constexpr double kUncoreMilliwatts = 45;  // a cluster's shared parts while it is awake
constexpr double kGpuIdleMilliwatts = 12;

double unit(double value) { return std::clamp(value, 0.0, 1.0); }

/// Work upon work: never quite everything, so that no figure ever stands still.
double together(double first, double second) { return 1 - (1 - first) * (1 - second); }

/// How much work the whole machine has, 0 to 1.
double demandAt(const LoadCurve& curve, double time) {
  const double calm =
      0.04 + 0.22 * curve.noise(kSlowWork, time, 9) + 0.14 * curve.noise(kQuickWork, time, 1.3);
  return together(calm, 0.8 * curve.burst(kWorkBursts, time, 13, 0.6));
}

double gpuDemandAt(const LoadCurve& curve, double time) {
  const double calm =
      0.03 + 0.16 * curve.noise(kGpuWork, time, 6) + 0.08 * curve.noise(kGpuFlicker, time, 1.1);
  return together(calm, 0.85 * curve.burst(kGpuBursts, time, 23, 0.4));
}

/// The share of the demand that reaches a cluster: light work stays on the efficiency cores, and
/// each further performance cluster wakes up when the one before it is busy.
double clusterDemand(CoreKind kind, std::size_t performanceClustersBefore, double demand) {
  if (kind == CoreKind::efficiency) return unit(0.12 + 0.85 * demand);
  const double threshold = 0.06 + 0.28 * static_cast<double>(performanceClustersBefore);
  return unit((demand - threshold) * 1.25);
}

/// Spreads `active` over the frequency table: mostly around the frequency that suits the demand,
/// a little at the lowest, where every burst begins.
UnitLoad spread(double active, double demand, std::size_t states) {
  UnitLoad load{.active = active, .residency = std::vector<double>(states, 0.0)};
  if (states == 0) return load;
  const double centre = unit(0.08 + 1.1 * demand) * static_cast<double>(states - 1);
  constexpr double kReach = 2.2;  // states to either side
  double sum = 0;
  for (std::size_t i = 0; i < states; ++i) {
    const double distance = std::abs(static_cast<double>(i) - centre) / kReach;
    load.residency[i] = std::max(0.0, 1 - distance) + (i == 0 ? 0.15 * (1 - demand) : 0);
    sum += load.residency[i];
  }
  for (double& share : load.residency) share *= active / sum;
  return load;
}

/// The cluster as a whole: awake unless all cores sleep at once, at the frequencies of its cores.
UnitLoad wholeOf(const std::vector<UnitLoad>& cores, std::size_t states) {
  double allAsleep = 1;
  double sum = 0;
  UnitLoad whole{.residency = std::vector<double>(states, 0.0)};
  for (const UnitLoad& core : cores) {
    allAsleep *= 1 - core.active;
    sum += core.active;
    for (std::size_t i = 0; i < states; ++i) whole.residency[i] += core.residency[i];
  }
  whole.active = 1 - allAsleep;
  for (double& share : whole.residency) share *= sum > 0 ? whole.active / sum : 0;
  return whole;
}

/// Power grows faster than frequency, because the voltage rises with it.
double busyShareOfPeak(const UnitLoad& load, const std::vector<int>& table) {
  double share = 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double relative = static_cast<double>(table[i]) / table.back();
    share += load.residency[i] * (0.3 * relative + 0.7 * relative * relative * relative);
  }
  return share;
}

ClusterLoad clusterLoad(const LoadCurve& curve, const ClusterDescription& cluster, double demand,
                        double time, std::uint64_t firstCpu) {
  const std::size_t states = cluster.frequencies.size();
  ClusterLoad load;
  for (std::uint64_t i = 0; i < cluster.cores; ++i) {
    const double own = curve.noise(kFirstCore + firstCpu + i, time, 1.7);
    const double active = unit(0.004 + 0.006 * own + demand * (0.35 + 0.9 * own));
    load.cores.push_back(spread(active, unit(0.05 * own + demand * (0.8 + 0.35 * own)), states));
  }
  load.whole = wholeOf(load.cores, states);
  return load;
}

}  // namespace

double UnitLoad::frequency(const std::vector<int>& table) const {
  double sum = 0;
  double weighted = 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    sum += residency[i];
    weighted += residency[i] * table[i];
  }
  if (sum > 0) return weighted / sum;
  return table.empty() ? 0 : table.front();
}

Load loadAt(const MachineDescription& machine, std::uint64_t seed, double time) {
  const LoadCurve curve(seed);
  const double demand = demandAt(curve, time);
  Load load;
  std::uint64_t firstCpu = 0;
  std::size_t performanceClusters = 0;
  for (const ClusterDescription& cluster : machine.clusters) {
    const double share = clusterDemand(cluster.kind, performanceClusters, demand);
    load.clusters.push_back(clusterLoad(curve, cluster, share, time, firstCpu));
    firstCpu += cluster.cores;
    if (cluster.kind == CoreKind::performance) ++performanceClusters;
    const ClusterLoad& added = load.clusters.back();
    load.cpuMilliwatts += kUncoreMilliwatts * added.whole.active;
    for (const UnitLoad& core : added.cores) {
      load.cpuMilliwatts += cluster.peakCoreMilliwatts * busyShareOfPeak(core, cluster.frequencies);
    }
  }
  const double gpuDemand = gpuDemandAt(curve, time);
  load.gpu = spread(unit(0.02 + 0.97 * gpuDemand), gpuDemand, machine.gpu.frequencies.size());
  load.gpuMilliwatts = kGpuIdleMilliwatts + machine.gpu.peakMilliwatts *
                                                busyShareOfPeak(load.gpu, machine.gpu.frequencies);
  load.aneMilliwatts = machine.anePeakMilliwatts * curve.burst(kAneBursts, time, 19, 0.4) *
                       (0.7 + 0.3 * curve.noise(kAneFlicker, time, 1.5));
  return load;
}

}  // namespace pallimo::adapters::simulated
