// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/system_clock.h"

namespace pallimo::adapters::qt {

SystemClock::TimePoint SystemClock::now() const { return at(realNow()); }

SystemClock::TimePoint SystemClock::at(TimePoint real) const {
  if (speed_ == 1) return real;
  return start_ + std::chrono::duration_cast<TimePoint::duration>((real - start_) * speed_);
}

SystemClock::TimePoint SystemClock::realNow() { return std::chrono::system_clock::now(); }

}  // namespace pallimo::adapters::qt
