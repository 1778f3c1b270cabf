// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/machine_past.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace pallimo::adapters::simulated {

namespace {

constexpr double kCell = 0.25;  // seconds

constexpr double kTicksPerSecond = 100;
constexpr double kUserShare = 0.7;

// A core's mean load from boot to the start.
constexpr double kLightShareBefore = 0.17;
constexpr double kFastShareBefore = 0.06;

constexpr double kLag = 3.5;      // seconds
constexpr double kAmbient = 31;   // degrees Celsius, of a machine that draws nothing
constexpr double kOwnRise = 27;   // of a part at its own peak power
constexpr double kPackRise = 37;  // of every part at the package's

double settled(double milliwatts, double peakMilliwatts, double packageShare) {
  return kAmbient + kOwnRise * milliwatts / peakMilliwatts + kPackRise * packageShare;
}

}  // namespace

MachineHeat settledHeat(const MachineDescription& machine, const Load& load) {
  const double package = load.packageMilliwatts() / machine.peakMilliwatts();
  MachineHeat heat;
  heat.clusters.reserve(load.clusters.size());
  for (std::size_t i = 0; i < load.clusters.size(); ++i) {
    heat.clusters.push_back(
        settled(load.clusters[i].milliwatts, machine.clusters[i].peakMilliwatts(), package));
  }
  heat.gpu = settled(load.gpuMilliwatts, machine.gpu.peakMilliwatts, package);
  return heat;
}

std::uint32_t ticksOf(double seconds) {
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(seconds * kTicksPerSecond));
}

MachinePast::MachinePast(const MachineDescription& machine, std::uint64_t seed)
    : machine_(machine), seed_(seed) {
  restart();
}

void MachinePast::moveTo(double time) {
  const double from = std::max(0.0, time);
  const auto cell = static_cast<std::int64_t>(std::floor(from / kCell));
  if (cell < cells_) restart();
  if (static_cast<double>(cell - cells_) * kCell > kLongestWalk) {
    sleepUntil(cell - static_cast<std::int64_t>(kAwakeBefore / kCell));
  }
  for (; cells_ < cell; ++cells_) advance(atCell_, loadOfCell(cells_), kCell);
  now_ = atCell_;
  advance(now_, loadOfCell(cell), from - static_cast<double>(cell) * kCell);
}

std::vector<ports::ProcessorTickCounts> MachinePast::ticks() const {
  constexpr auto kBefore = static_cast<double>(kUptimeAtStart);
  const CoreKind slowest = machine_.kinds().back();
  std::vector<ports::ProcessorTickCounts> counts;
  counts.reserve(now_.busy.size());
  for (const ClusterDescription& cluster : machine_.clusters) {
    const double kindShare = cluster.kind == slowest ? kLightShareBefore : kFastShareBefore;
    for (std::size_t i = 0; i < cluster.cores; ++i) {
      // The first cores of a cluster get a little more than the others.
      const double share = kindShare / (1 + 0.1 * static_cast<double>(i));
      const double busy = kBefore * share + now_.busy[counts.size()];
      const double idle = kBefore * (1 - share) + now_.idle[counts.size()];
      counts.push_back(
          {ticksOf(kUserShare * busy), ticksOf((1 - kUserShare) * busy), ticksOf(idle), 0});
    }
  }
  return counts;
}

void MachinePast::restart() {
  const std::size_t cores = machine_.coreCount();
  cells_ = 0;
  atCell_ = {std::vector<double>(cores, 0.0), std::vector<double>(cores, 0.0),
             settledHeat(machine_, loadOfCell(0))};
  now_ = atCell_;
}

void MachinePast::sleepUntil(std::int64_t cell) {
  cells_ = cell;
  // Not where the last cell began: what was counted within it has been told and must not fall.
  atCell_ = now_;
  atCell_.heat = settledHeat(machine_, loadOfCell(cell));
}

Load MachinePast::loadOfCell(std::int64_t cell) const {
  return loadAt(machine_, seed_, (static_cast<double>(cell) + 0.5) * kCell);
}

void MachinePast::advance(State& state, const Load& load, double seconds) const {
  std::size_t cpu = 0;
  for (const ClusterLoad& cluster : load.clusters) {
    for (const double active : cluster.cores) {
      state.busy[cpu] += active * seconds;
      state.idle[cpu] += (1 - active) * seconds;
      ++cpu;
    }
  }
  const MachineHeat target = settledHeat(machine_, load);
  const double part = 1 - std::exp(-seconds / kLag);
  for (std::size_t i = 0; i < target.clusters.size(); ++i) {
    state.heat.clusters[i] += (target.clusters[i] - state.heat.clusters[i]) * part;
  }
  state.heat.gpu += (target.gpu - state.heat.gpu) * part;
}

}  // namespace pallimo::adapters::simulated
