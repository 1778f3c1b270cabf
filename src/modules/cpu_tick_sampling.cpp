// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/cpu_tick_sampling.h"

#include <algorithm>
#include <cstddef>

namespace pallimo::modules {

namespace {

double signedCount(std::uint32_t ticks) { return static_cast<std::int32_t>(ticks); }

void add(CPUUnitInfo& sum, const CPUUnitInfo& info) {
  sum.user += info.user;
  sum.system += info.system;
  sum.idle += info.idle;
  sum.nice += info.nice;
}

void divide(CPUUnitInfo& sum, std::size_t count) {
  const auto divisor = static_cast<double>(count);
  sum.user /= divisor;
  sum.system /= divisor;
  sum.idle /= divisor;
  sum.nice /= divisor;
}

/// Finds the first record of a processor's number.
class Processors {
 public:
  explicit Processors(const TickSnapshot& list) : list_(list) {
    for (std::size_t i = 0; i < list.size() && isInOrder_; ++i) {
      isInOrder_ = list[i].cpuNum == static_cast<std::int64_t>(i);
    }
  }

  const CPUUnitInfo* find(std::int64_t cpu) const {
    // The kernel's lists are in order; searching them would take the square of the processors.
    if (isInOrder_) {
      const bool isListed = cpu >= 0 && cpu < static_cast<std::int64_t>(list_.size());
      return isListed ? &list_[static_cast<std::size_t>(cpu)] : nullptr;
    }
    const auto found = std::find_if(list_.begin(), list_.end(),
                                    [cpu](const CPUUnitInfo& info) { return info.cpuNum == cpu; });
    return found == list_.end() ? nullptr : &*found;
  }

 private:
  const TickSnapshot& list_;
  bool isInOrder_ = true;  ///< each record stands at the place of its number
};

CPUUnitInfo clusterAverage(const Processors& processors, const std::vector<std::int64_t>& cpus) {
  CPUUnitInfo average;
  for (const std::int64_t cpu : cpus) {
    if (const CPUUnitInfo* info = processors.find(cpu)) add(average, *info);
  }
  divide(average, std::max<std::size_t>(1, cpus.size()));
  return average;
}

}  // namespace

TickSnapshot takeTickSnapshot(ports::ProcessorTicks& ticks) {
  TickSnapshot snapshot;
  const auto counts = ticks.read();
  if (!counts) return snapshot;
  snapshot.reserve(counts->size());
  std::int64_t cpuNum = 0;
  for (const auto& [user, system, idle, nice] : *counts) {
    snapshot.push_back(
        {cpuNum++, signedCount(user), signedCount(system), signedCount(idle), signedCount(nice)});
  }
  return snapshot;
}

TickSnapshot tickDeltas(const std::optional<TickSnapshot>& previous, const TickSnapshot& current) {
  if (!previous || previous->size() != current.size()) return current;
  TickSnapshot deltas;
  deltas.reserve(current.size());
  for (std::size_t i = 0; i < current.size(); ++i) {
    const CPUUnitInfo& before = (*previous)[i];
    const CPUUnitInfo& now = current[i];
    deltas.push_back({static_cast<std::int64_t>(i), now.user - before.user,
                      now.system - before.system, now.idle - before.idle, now.nice - before.nice});
  }
  return deltas;
}

CPUUnitInfo tickAverage(const TickSnapshot& list) {
  CPUUnitInfo average;
  for (const CPUUnitInfo& info : list) add(average, info);
  if (!list.empty()) divide(average, list.size());
  return average;
}

ClusterTicks clusterTickAverages(const TickSnapshot& list,
                                 const sampling::ClusterCPUs& membership) {
  const Processors processors(list);
  ClusterTicks averages;
  for (const auto& [name, cpus] : membership) {
    averages.emplace(name, clusterAverage(processors, cpus));
  }
  return averages;
}

// The sum nests as ((user + system) + idle) + nice, for the whole CPU and for the clusters alike:
// another nesting may round to another last bit.
double busyFraction(const CPUUnitInfo& info) {
  return 1 - info.idle / (info.user + info.system + info.idle + info.nice);
}

}  // namespace pallimo::modules
