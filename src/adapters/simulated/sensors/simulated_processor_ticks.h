// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/sensors/current_step.h"
#include "ports/processor_ticks.h"

namespace pallimo::adapters::simulated {

/// The processors' counters as they stand at the current step. Any thread.
class SimulatedProcessorTicks final : public ports::ProcessorTicks {
 public:
  /// `now` outlives the object.
  explicit SimulatedProcessorTicks(CurrentStep& now) : now_(now) {}

  std::optional<std::vector<ports::ProcessorTickCounts>> read() override {
    return now_.get()->ticks;
  }

 private:
  CurrentStep& now_;
};

}  // namespace pallimo::adapters::simulated
