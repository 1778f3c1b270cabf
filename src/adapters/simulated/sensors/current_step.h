// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/step_source.h"
#include "base/mutex.h"
#include "ports/clock.h"

namespace pallimo::adapters::simulated {

/// The step that all sensors of a simulated machine answer with. It stands still between two
/// results, so that everything that is read for one sample agrees. Any thread: results move it on
/// the thread that delivers them, start-up reads it on the main thread.
///
/// It begins with request 1 at time 0, which is what start-up reads.
class CurrentStep {
 public:
  /// `clock` outlives the object. It already runs at the speed of the simulation, and `startTime`
  /// (seconds since 1970) is what it showed when the simulated time began.
  CurrentStep(std::unique_ptr<StepSource> source, const ports::Clock& clock, double startTime);

  /// Nobody changes the step any more; it may be kept.
  std::shared_ptr<const RecordingStep> get();

  /// The moment is now the delivery of a result: that of a connection's request `request`, counted
  /// from one, at the time that the clock shows. Simulated time never runs backwards: while the
  /// clock shows less than it did at an earlier result, or than the start, it stands still.
  void moveTo(std::uint64_t request);

 private:
  double simulatedTime() const;

  const ports::Clock& clock_;
  const double startTime_;

  // Held over the making of a step too. That is arithmetic without any I/O, done once a moment by
  // the first who asks; a second thread would otherwise do it again beside the first.
  base::Mutex mutex_;
  const std::unique_ptr<StepSource> source_;  // asked under mutex_ alone
  SimulatedMoment moment_ PALLIMO_GUARDED_BY(mutex_);
  std::shared_ptr<const RecordingStep> step_ PALLIMO_GUARDED_BY(mutex_);  // nullptr: not yet asked
};

}  // namespace pallimo::adapters::simulated
