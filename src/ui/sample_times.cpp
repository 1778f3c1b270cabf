// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/sample_times.h"

#include <algorithm>

namespace pallimo::ui {

void SampleTimes::add(TimePoint time) {
  base::MutexLock lock(mutex_);
  times_[next_] = time;
  next_ = (next_ + 1) % times_.size();
  count_ = std::min(count_ + 1, times_.size());
}

void SampleTimes::clear() {
  base::MutexLock lock(mutex_);
  next_ = 0;
  count_ = 0;
}

std::vector<SampleTimes::TimePoint> SampleTimes::newestFirst() const {
  std::vector<TimePoint> newest;
  newest.reserve(kGraphLength);
  base::MutexLock lock(mutex_);
  for (std::size_t i = 1; i <= count_; ++i) {
    newest.push_back(times_[(next_ + times_.size() - i) % times_.size()]);
  }
  return newest;
}

}  // namespace pallimo::ui
