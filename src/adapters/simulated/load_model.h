// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <vector>

#include "adapters/simulated/machine_description.h"

namespace pallimo::adapters::simulated {

/// How busy something with a table of frequencies is.
struct UnitLoad {
  double active = 0;  ///< share of the time, 0 to 1; the rest is idle
  /// Share of the time spent busy at each frequency of the table; they add up to `active`.
  std::vector<double> residency;

  /// Mean frequency while it was busy, MHz; the table's lowest when it never was.
  double frequency(const std::vector<int>& table) const;
};

struct ClusterLoad {
  UnitLoad whole;  ///< busy while at least one of its cores is
  std::vector<UnitLoad> cores;
};

/// What a machine does at one moment.
struct Load {
  std::vector<ClusterLoad> clusters;  ///< in the machine's order
  UnitLoad gpu;
  double cpuMilliwatts = 0;
  double gpuMilliwatts = 0;
  double aneMilliwatts = 0;
};

/// The load of a machine: a calm desk with bursts of work. Every simulated figure comes from this
/// one curve, so that frequency, power and utilisation tell the same story. A pure function of its
/// arguments; `time` is in seconds since the simulation began and finite. Any thread.
Load loadAt(const MachineDescription& machine, std::uint64_t seed, double time);

}  // namespace pallimo::adapters::simulated
