// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/step_source.h"

#include <utility>

#include "adapters/simulated/machines/builtin_sensors.h"

namespace pallimo::adapters::simulated {

namespace {

class RecordedSteps final : public StepSource {
 public:
  explicit RecordedSteps(std::shared_ptr<const Recording> recording)
      : recording_(std::move(recording)) {}

  std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) override {
    const std::size_t step = recording_->stepForRequest(moment.request);
    return {recording_, &recording_->steps.at(step)};
  }

 private:
  const std::shared_ptr<const Recording> recording_;
};

class BuiltinSteps final : public StepSource {
 public:
  BuiltinSteps(const MachineDescription& machine, std::uint64_t seed) : sensors_(machine, seed) {}

  std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) override {
    return std::make_shared<const RecordingStep>(sensors_.stepAt(moment.time));
  }

 private:
  BuiltinSensors sensors_;
};

}  // namespace

std::unique_ptr<StepSource> recordedSteps(std::shared_ptr<const Recording> recording) {
  return std::make_unique<RecordedSteps>(std::move(recording));
}

std::unique_ptr<StepSource> builtinSteps(const MachineDescription& machine, std::uint64_t seed) {
  return std::make_unique<BuiltinSteps>(machine, seed);
}

}  // namespace pallimo::adapters::simulated
