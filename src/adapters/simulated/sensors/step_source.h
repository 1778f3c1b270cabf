// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>

#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/recordings/recording.h"

namespace pallimo::adapters::simulated {

/// A point of a simulated run, told in both ways in which machines measure it.
struct SimulatedMoment {
  std::uint64_t request = 1;  ///< of a connection, counted from one; what a recording goes by
  double time = 0;  ///< simulated seconds since the start; what a built-in machine goes by

  bool operator==(const SimulatedMoment&) const = default;
};

/// What a machine's sensors answer at a moment, recorded or built in: from here on there is no
/// difference between the two. One thread at a time.
class StepSource {
 public:
  virtual ~StepSource() = default;

  /// Never nullptr. A built-in machine walks its past up to the moment: the cost is that of the
  /// time since the moment before, at most an hour of it.
  virtual std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) = 0;
};

/// The steps of a recording, by request. They are shared, not copied.
std::unique_ptr<StepSource> recordedSteps(std::shared_ptr<const Recording> recording);

/// What a built-in machine does, by time. The machine outlives the result.
std::unique_ptr<StepSource> builtinSteps(const MachineDescription& machine, std::uint64_t seed);

}  // namespace pallimo::adapters::simulated
