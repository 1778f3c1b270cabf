// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/step_source.h"

#include <gtest/gtest.h>

#include "adapters/simulated/machines/builtin_sensors.h"
#include "adapters/simulated/machines/machines.h"

namespace pallimo::adapters::simulated {
namespace {

std::shared_ptr<const Recording> threeSteps() {
  auto recording = std::make_shared<Recording>();
  recording->steps.resize(3);
  return recording;
}

TEST(RecordedSteps, AreTheRecordingsOwnByRequest) {
  const auto recording = threeSteps();
  const auto steps = recordedSteps(recording);
  EXPECT_EQ(steps->stepAt({1, 0}).get(), &recording->steps[0]);
  EXPECT_EQ(steps->stepAt({3, 0}).get(), &recording->steps[2]);
}

TEST(RecordedSteps, BeginAgainAfterTheLast) {
  const auto recording = threeSteps();
  EXPECT_EQ(recordedSteps(recording)->stepAt({4, 0}).get(), &recording->steps[0]);
}

TEST(RecordedSteps, GoByRequestAndNotByTime) {
  const auto recording = threeSteps();
  EXPECT_EQ(recordedSteps(recording)->stepAt({2, 5'000}).get(), &recording->steps[1]);
}

TEST(RecordedSteps, KeepTheirRecording) {
  auto recording = threeSteps();
  const std::weak_ptr<const Recording> watched = recording;
  auto step = recordedSteps(std::move(recording))->stepAt({1, 0});
  EXPECT_FALSE(watched.expired());
  step.reset();
  EXPECT_TRUE(watched.expired());
}

const MachineDescription& machine() { return builtinMachines().front(); }

TEST(BuiltinSteps, AreWhatTheMachineDoesAtThatTime) {
  const auto steps = builtinSteps(machine(), 5);
  EXPECT_EQ(*steps->stepAt({1, 12.5}), BuiltinSensors(machine(), 5).stepAt(12.5));
}

TEST(BuiltinSteps, DifferFromTimeToTime) {
  const auto steps = builtinSteps(machine(), 5);
  EXPECT_NE(*steps->stepAt({1, 12.5}), *steps->stepAt({1, 40}));
}

TEST(BuiltinSteps, GoByTimeAndNotByRequest) {
  const auto steps = builtinSteps(machine(), 5);
  EXPECT_EQ(*steps->stepAt({1, 3}), *steps->stepAt({9, 3}));
}

TEST(BuiltinSteps, DifferFromSeedToSeed) {
  EXPECT_NE(*builtinSteps(machine(), 5)->stepAt({1, 30}),
            *builtinSteps(machine(), 6)->stepAt({1, 30}));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
