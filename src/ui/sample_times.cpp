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

std::optional<SampleTimes::TimePoint> SampleTimes::at(std::size_t index) const {
  base::MutexLock lock(mutex_);
  if (index >= count_) return std::nullopt;
  return times_[(next_ + times_.size() - 1 - index) % times_.size()];
}

}  // namespace pallimo::ui
