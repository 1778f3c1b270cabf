// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "adapters/simulated/machines/machine_description.h"

namespace pallimo::adapters::simulated {

/// How busy something with a clock of its own is.
struct UnitLoad {
  double active = 0;  ///< share of the time, 0 to 1; the rest is idle
  /// Share of the busy time spent at each frequency of the table; they add up to 1.
  std::vector<double> shares;

  /// Mean frequency while it was busy, MHz; the table's lowest when it never was.
  double frequency(const std::vector<int>& table) const;
};

struct ClusterLoad {
  UnitLoad whole;             ///< busy while at least one of its cores is
  std::vector<double> cores;  ///< the share of the time that each is busy; they share one clock
  double milliwatts = 0;
};

/// What a machine does at one moment.
struct Load {
  double demand = 0;                  ///< how much work there is, 0 to 1
  std::vector<ClusterLoad> clusters;  ///< in the machine's order
  UnitLoad gpu;
  double cpuMilliwatts = 0;  ///< of all clusters
  double gpuMilliwatts = 0;
  double aneMilliwatts = 0;

  double packageMilliwatts() const { return cpuMilliwatts + gpuMilliwatts + aneMilliwatts; }
};

// All below are pure functions of their arguments. `time` is in seconds since the simulation began
// and finite. Any thread.

/// How much work there is at a moment: a calm desk with bursts of work, calmer and busier minutes.
/// More than 0 and less than 1.
double demandAt(std::uint64_t seed, double time);

/// What a machine does with that much work at that moment. Every part follows the one demand, each
/// with a flicker of its own, so that frequency, power and utilisation tell the same story. With
/// more demand at the same moment nothing gets slower, less busy or cheaper.
///
/// The machine's slowest kind of core keeps the light work; clusters of the faster kinds wake one
/// after the other, the fastest kind first.
Load loadFor(const MachineDescription& machine, std::uint64_t seed, double time, double demand);

/// What a machine does at that moment.
Load loadAt(const MachineDescription& machine, std::uint64_t seed, double time);

}  // namespace pallimo::adapters::simulated
