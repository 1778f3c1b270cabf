// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/load_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "adapters/simulated/machines/load_curve.h"

namespace pallimo::adapters::simulated {

namespace {

// Channels of chance. A core's own is kFirstCore + its number, a cluster's likewise.
constexpr std::uint64_t kSlowWork = 1;
constexpr std::uint64_t kQuickWork = 2;
constexpr std::uint64_t kWorkBursts = 3;
constexpr std::uint64_t kGpuWork = 4;
constexpr std::uint64_t kGpuFlicker = 5;
constexpr std::uint64_t kMinutes = 6;
constexpr std::uint64_t kClicks = 7;
constexpr std::uint64_t kAneFlicker = 9;
constexpr std::uint64_t kFirstCluster = 50;
constexpr std::uint64_t kFirstCore = 100;

constexpr double kUncoreMilliwatts = 45;  // a cluster's shared parts while it is awake
constexpr double kGpuIdleMilliwatts = 12;

double unit(double value) { return std::clamp(value, 0.0, 1.0); }

/// Work upon work: never quite everything, so that no figure ever stands still.
double together(double first, double second) { return 1 - (1 - first) * (1 - second); }

/// Spreads the busy time over the frequency table: mostly around the frequency that suits the
/// demand, a little at the lowest, where every burst begins. The mean never falls with the demand:
/// the bulk has the same log-concave shape wherever it stands, and the part at the lowest is mixed
/// in after the bulk adds up to one.
std::vector<double> sharesFor(double demand, std::size_t states) {
  std::vector<double> shares(states, 0.0);
  if (states == 0) return shares;
  constexpr double kReach = 2.2;  // states to either side
  const double centre = unit(0.03 + 0.97 * demand) * static_cast<double>(states - 1);
  double sum = 0;
  for (std::size_t i = 0; i < states; ++i) {
    shares[i] = std::max(0.0, 1 - std::abs(static_cast<double>(i) - centre) / kReach);
    sum += shares[i];
  }
  const double atLowest = 0.12 * (1 - demand);
  for (double& share : shares) share *= (1 - atLowest) / sum;
  shares.front() += atLowest;
  return shares;
}

/// Power grows faster than frequency, because the voltage rises with it.
double shareOfPeak(const UnitLoad& load, const std::vector<int>& table) {
  double share = 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double relative = static_cast<double>(table[i]) / table.back();
    share += load.shares[i] * (0.3 * relative + 0.7 * relative * relative * relative);
  }
  return share;
}

/// The demands on the clusters, in the machine's order.
std::vector<double> clusterDemands(const MachineDescription& machine, double demand) {
  const auto fastToSlow = machine.kinds();
  const CoreKind slowest = fastToSlow.back();
  std::size_t fastClusters = 0;
  for (const auto& cluster : machine.clusters) fastClusters += cluster.kind == slowest ? 0 : 1;
  std::vector<double> demands(machine.clusters.size(), unit(0.12 + 0.85 * demand));
  std::size_t awake = 0;
  for (const CoreKind kind : fastToSlow) {
    for (std::size_t i = 0; i < machine.clusters.size() && kind != slowest; ++i) {
      if (machine.clusters[i].kind != kind) continue;
      const double place = static_cast<double>(awake++) / static_cast<double>(fastClusters);
      demands[i] = unit((demand - 0.05 - 0.5 * place) * 1.25);
    }
  }
  return demands;
}

ClusterLoad clusterLoad(const LoadCurve& curve, const ClusterDescription& cluster,
                        std::size_t index, std::uint64_t firstCpu, double time, double demand) {
  ClusterLoad load;
  load.cores.reserve(cluster.cores);
  double allAsleep = 1;
  double sum = 0;
  for (std::uint64_t i = 0; i < cluster.cores; ++i) {
    const double own = curve.noise(kFirstCore + firstCpu + i, time, 1.7);
    const double active = unit(0.004 + 0.006 * own + demand * (0.4 + 0.75 * own));
    load.cores.push_back(active);
    allAsleep *= 1 - active;
    sum += active;
  }
  const double own = curve.noise(kFirstCluster + index, time, 1.9);
  load.whole.active = 1 - allAsleep;
  load.whole.shares =
      sharesFor(unit(0.03 * own + demand * (0.83 + 0.13 * own)), cluster.frequencies.size());
  load.milliwatts = kUncoreMilliwatts * load.whole.active +
                    cluster.peakCoreMilliwatts * sum * shareOfPeak(load.whole, cluster.frequencies);
  return load;
}

void loadGpu(Load& load, const LoadCurve& curve, const GpuDescription& gpu, double time) {
  const double slow = curve.noise(kGpuWork, time, 6);
  const double quick = curve.noise(kGpuFlicker, time, 1.1);
  const double demand =
      unit(0.02 + 0.04 * slow + 0.02 * quick + load.demand * (0.68 + 0.2 * slow + 0.08 * quick));
  load.gpu.active = unit(0.01 + 0.98 * demand);
  load.gpu.shares = sharesFor(demand, gpu.frequencies.size());
  load.gpuMilliwatts = kGpuIdleMilliwatts + gpu.peakMilliwatts * load.gpu.active *
                                                shareOfPeak(load.gpu, gpu.frequencies);
}

/// The neural engine sleeps until there is much to do.
double aneShare(const LoadCurve& curve, double time, double demand) {
  const double work = unit((demand - 0.35) / 0.65);
  return work * work * (0.6 + 0.4 * curve.noise(kAneFlicker, time, 1.5));
}

}  // namespace

double UnitLoad::frequency(const std::vector<int>& table) const {
  if (active <= 0) return table.empty() ? 0 : table.front();
  double mean = 0;
  for (std::size_t i = 0; i < table.size(); ++i) mean += shares[i] * table[i];
  return mean;
}

double demandAt(std::uint64_t seed, double time) {
  const LoadCurve curve(seed);
  const double minutes = curve.noise(kMinutes, time, 75);
  const double calm = 0.03 + 0.14 * curve.noise(kSlowWork, time, 9) +
                      0.1 * curve.noise(kQuickWork, time, 2.1) + 0.15 * minutes * minutes;
  const double clicks = 0.35 * curve.burst(kClicks, time, 7, 0.45);
  const double work = (0.5 + 0.4 * minutes) * curve.burst(kWorkBursts, time, 17, 0.6);
  return together(together(calm, clicks), work);
}

Load loadFor(const MachineDescription& machine, std::uint64_t seed, double time, double demand) {
  const LoadCurve curve(seed);
  const std::vector<double> demands = clusterDemands(machine, demand);
  Load load;
  load.demand = demand;
  load.clusters.reserve(machine.clusters.size());
  std::uint64_t firstCpu = 0;
  for (std::size_t i = 0; i < machine.clusters.size(); ++i) {
    const ClusterDescription& cluster = machine.clusters[i];
    load.clusters.push_back(clusterLoad(curve, cluster, i, firstCpu, time, demands[i]));
    load.cpuMilliwatts += load.clusters.back().milliwatts;
    firstCpu += cluster.cores;
  }
  loadGpu(load, curve, machine.gpu, time);
  load.aneMilliwatts = machine.anePeakMilliwatts * aneShare(curve, time, demand);
  return load;
}

Load loadAt(const MachineDescription& machine, std::uint64_t seed, double time) {
  return loadFor(machine, seed, time, demandAt(seed, time));
}

}  // namespace pallimo::adapters::simulated
