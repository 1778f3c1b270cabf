// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/machines/machine_past.h"
#include "adapters/simulated/recordings/recording.h"

namespace pallimo::adapters::simulated {

/// What the sensors of a built-in machine answer, moment by moment: temperatures over SMC and HID,
/// processor ticks and the graphics accelerator. A function of machine, seed and time, as far as
/// MachinePast is one; the object remembers the way it has come, so that a moment costs the time
/// since the one before. Not thread-safe. The machine outlives the object.
class BuiltinSensors {
 public:
  BuiltinSensors(const MachineDescription& machine, std::uint64_t seed);

  /// The answers at `time`, simulated seconds since the start, 0 or more. Names no document. `smc`
  /// holds the temperatures alone: nothing else in the SMC changes.
  RecordingStep stepAt(double time);

 private:
  const MachineDescription& machine_;
  std::uint64_t seed_;
  MachinePast past_;
};

}  // namespace pallimo::adapters::simulated
