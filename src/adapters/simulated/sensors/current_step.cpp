// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/current_step.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace pallimo::adapters::simulated {

CurrentStep::CurrentStep(std::unique_ptr<StepSource> source, const ports::Clock& clock,
                         double startTime)
    : clock_(clock), startTime_(startTime), source_(std::move(source)) {}

std::shared_ptr<const RecordingStep> CurrentStep::get() {
  base::MutexLock lock(mutex_);
  if (!step_) step_ = source_->stepAt(moment_);
  return step_;
}

void CurrentStep::moveTo(std::uint64_t request) {
  const double now = simulatedTime();
  std::shared_ptr<const RecordingStep> past;
  base::MutexLock lock(mutex_);
  moment_ = {request, std::max(moment_.time, now)};
  step_.swap(past);
}

double CurrentStep::simulatedTime() const {
  const std::chrono::duration<double> now = clock_.now().time_since_epoch();
  return now.count() - startTime_;
}

}  // namespace pallimo::adapters::simulated
