// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ports/processor_ticks.h"
#include "sampling/sample_reader.h"

namespace pallimo::modules {

/// The ticks of one processor, or of several on average.
struct CPUUnitInfo {
  std::int64_t cpuNum = -1;  ///< place in the kernel's list, from 0; -1: an average
  double user = 0;           ///< ticks of 10 ms, as the three below
  double system = 0;
  double idle = 0;
  double nice = 0;
  bool operator==(const CPUUnitInfo&) const = default;
};

using TickSnapshot = std::vector<CPUUnitInfo>;
using ClusterTicks = std::map<std::string, CPUUnitInfo, std::less<>>;

// Pure functions but for the first, which reads the kernel's counters. Any thread.

/// Every processor's counters since boot, read as signed 32-bit numbers (so a counter turns
/// negative after some 248 days of one state); empty when they can't be read.
TickSnapshot takeTickSnapshot(ports::ProcessorTicks& ticks);

/// What was counted between two snapshots, matched by place. `current` itself, the counters since
/// boot, when there is no previous snapshot or it has another number of processors.
TickSnapshot tickDeltas(const std::optional<TickSnapshot>& previous, const TickSnapshot& current);

/// The mean of all records; all counters 0 when there are none.
CPUUnitInfo tickAverage(const TickSnapshot& list);

/// For each cluster the sum over its processors divided by how many it lists (at least 1), also
/// when the list lacks some of them.
ClusterTicks clusterTickAverages(const TickSnapshot& list, const sampling::ClusterCPUs& membership);

/// 1 - idle / all; not a number without any tick.
double busyFraction(const CPUUnitInfo& info);

}  // namespace pallimo::modules
