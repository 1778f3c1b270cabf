// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <vector>

#include "adapters/simulated/machines/load_model.h"
#include "adapters/simulated/machines/machine_description.h"
#include "ports/processor_ticks.h"

namespace pallimo::adapters::simulated {

/// Seconds that the machine had been up when the simulation began: booted the day before.
inline constexpr std::int64_t kUptimeAtStart = 93'784;

/// How warm the parts of a machine are, degrees Celsius.
struct MachineHeat {
  std::vector<double> clusters;  ///< in the machine's order
  double gpu = 0;
};

/// The heat to which every part tends when the load stays as it is: its own power and a share of
/// the whole package's warm it. A little over 30 when nothing runs, under 100 at full load. Any
/// thread.
MachineHeat settledHeat(const MachineDescription& machine, const Load& load);

/// The longest way ahead that a machine is awake for, seconds: an hour.
inline constexpr double kLongestWalk = 3600;
/// How long before the moment a machine awoke that slept through a longer way, seconds: a minute.
inline constexpr double kAwakeBefore = 60;

/// So many seconds in the kernel's ticks of 10 ms, which wrap at 32 bits. 0 or more. Any thread.
std::uint32_t ticksOf(double seconds);

/// What has piled up in a machine since it started: the time that its processors were busy and the
/// heat of their work. Walks the load of the simulation on a fixed grid of quarter seconds from
/// time 0 and interpolates within the last cell.
///
/// As long as it is never moved ahead by more than kLongestWalk at once, the answers are a pure
/// function of machine, seed and time, bit by bit, whatever was asked before. A longer leap of the
/// clock is the machine's sleep: it ends kAwakeBefore ahead of the moment, nothing is counted in
/// it, and the heat is that of the walk since then, which by its lag has forgotten everything
/// before.
///
/// A time ahead costs one load a cell of the way, never more than kLongestWalk has cells; a time
/// before the last one begins at the start again. Not thread-safe. The machine outlives the object.
class MachinePast {
 public:
  /// Stands at time 0.
  MachinePast(const MachineDescription& machine, std::uint64_t seed);

  /// Goes to `time`, finite seconds since the simulation began; before 0 is 0. What is asked below
  /// is as of then.
  void moveTo(double time);

  /// The kernel's counters of every processor since the machine booted, kUptimeAtStart before the
  /// simulation began. Of the busy time seven tenths are user time; nothing is nice, as on a Mac.
  /// They never fall, but wrap.
  std::vector<ports::ProcessorTickCounts> ticks() const;

  /// Follows settledHeat() of the load with a first-order lag of a few seconds.
  const MachineHeat& heat() const { return now_.heat; }

 private:
  /// Sums of seconds since the simulation began, one entry a processor, and the heat.
  struct State {
    std::vector<double> busy;
    std::vector<double> idle;
    MachineHeat heat;
  };

  void restart();
  void sleepUntil(std::int64_t cell);
  Load loadOfCell(std::int64_t cell) const;
  void advance(State& state, const Load& load, double seconds) const;

  const MachineDescription& machine_;
  std::uint64_t seed_;
  std::int64_t cells_ = 0;  ///< walked, or slept through
  State atCell_;            ///< where that cell begins
  State now_;
};

}  // namespace pallimo::adapters::simulated
