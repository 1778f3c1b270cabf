// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/current_step.h"
#include "adapters/simulated/sensors/step_source.h"
#include "fakes/manual_clock.h"

namespace pallimo::adapters::simulated {

/// Recorded steps for a sensor, which the test moves along.
class MovableSteps {
 public:
  explicit MovableSteps(std::vector<RecordingStep> steps)
      : now_(recordedSteps(recordingOf(std::move(steps))), clock_, 0) {}

  CurrentStep& now() { return now_; }

  static std::shared_ptr<const Recording> recordingOf(std::vector<RecordingStep> steps) {
    auto recording = std::make_shared<Recording>();
    recording->steps = std::move(steps);
    return recording;
  }

 private:
  fakes::ManualClock clock_;
  CurrentStep now_;
};

/// An SMC value: these bytes, the rest zero.
inline std::array<std::uint8_t, 32> smcValue(std::initializer_list<std::uint8_t> bytes) {
  std::array<std::uint8_t, 32> all{};
  std::copy(bytes.begin(), bytes.end(), all.begin());
  return all;
}

inline RecordingStep stepWithHid(std::vector<HidReading> readings) {
  RecordingStep step;
  step.hid = std::move(readings);
  return step;
}

inline RecordingStep stepWithAccelerators(std::vector<RecordedAccelerator> accelerators) {
  RecordingStep step;
  step.accelerators = std::move(accelerators);
  return step;
}

inline RecordingStep stepWithTicks(std::vector<ports::ProcessorTickCounts> ticks) {
  RecordingStep step;
  step.ticks = std::move(ticks);
  return step;
}

}  // namespace pallimo::adapters::simulated
