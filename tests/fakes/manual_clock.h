// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

#include "base/mutex.h"
#include "ports/clock.h"

namespace pallimo::fakes {

/// A wall clock that the test sets; it begins at 1970-01-01 00:00 UTC. Any thread.
class ManualClock final : public ports::Clock {
 public:
  using TimePoint = std::chrono::system_clock::time_point;

  TimePoint now() const override {
    base::MutexLock lock(mutex_);
    const TimePoint shown = now_;
    now_ += step_;
    return shown;
  }

  void set(TimePoint now) {
    base::MutexLock lock(mutex_);
    now_ = now;
  }

  void advance(std::chrono::system_clock::duration by) {
    base::MutexLock lock(mutex_);
    now_ += by;
  }

  /// By how much each look at the clock moves it on; at first not at all.
  void setStep(std::chrono::system_clock::duration step) {
    base::MutexLock lock(mutex_);
    step_ = step;
  }

 private:
  mutable base::Mutex mutex_;
  mutable TimePoint now_ PALLIMO_GUARDED_BY(mutex_){};
  std::chrono::system_clock::duration step_ PALLIMO_GUARDED_BY(mutex_){};
};

}  // namespace pallimo::fakes
