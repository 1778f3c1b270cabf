// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_processor_ticks.h"

#include <gtest/gtest.h>

#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

using Counts = std::vector<ports::ProcessorTickCounts>;

TEST(SimulatedProcessorTicks, AreThoseOfTheStep) {
  MovableSteps steps({stepWithTicks({{1, 2, 3, 4}, {5, 6, 7, 4'294'967'295}}),
                      stepWithTicks({{2, 3, 4, 5}}), stepWithTicks({})});
  SimulatedProcessorTicks ticks(steps.now());
  EXPECT_EQ(ticks.read(), (Counts{{1, 2, 3, 4}, {5, 6, 7, 4'294'967'295}}));
  steps.now().moveTo(2);
  EXPECT_EQ(ticks.read(), (Counts{{2, 3, 4, 5}}));
  steps.now().moveTo(3);
  EXPECT_EQ(ticks.read(), Counts{});
}

TEST(SimulatedProcessorTicks, CannotBeReadInAStepWithoutThem) {
  MovableSteps steps({RecordingStep{}});
  EXPECT_EQ(SimulatedProcessorTicks(steps.now()).read(), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
