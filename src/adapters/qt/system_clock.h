// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

#include "ports/clock.h"

namespace pallimo::adapters::qt {

/// The wall clock of a run that goes `speed` times faster than real time since `start`; with a
/// speed of 1 it is the wall clock. Any thread.
class SystemClock final : public ports::Clock {
 public:
  using TimePoint = std::chrono::system_clock::time_point;

  SystemClock(TimePoint start, double speed) : start_(start), speed_(speed) {}

  TimePoint now() const override;
  /// What the clock shows at the real time `real`. Pure.
  TimePoint at(TimePoint real) const;

  /// The real time, for whoever needs the moment when a run begins.
  static TimePoint realNow();

 private:
  const TimePoint start_;
  const double speed_;
};

}  // namespace pallimo::adapters::qt
