// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <vector>

#include "base/mutex.h"
#include "ui/panel.h"

namespace pallimo::ui {

/// When the newest samples arrived: as many as a graph shows.
///
/// Written after the histories, one entry a sample, and cleared with them. Whoever shows histories
/// takes the times when it takes those and keeps both: an index then means the same sample here and
/// there. Any thread.
class SampleTimes {
 public:
  using TimePoint = std::chrono::system_clock::time_point;

  /// Makes `time` the newest; the oldest gives way when there are kGraphLength.
  void add(TimePoint time);
  void clear();
  /// All of them, index 0 the newest.
  std::vector<TimePoint> newestFirst() const;

 private:
  mutable base::Mutex mutex_;
  std::array<TimePoint, kGraphLength> times_ PALLIMO_GUARDED_BY(mutex_){};
  std::size_t next_ PALLIMO_GUARDED_BY(mutex_) = 0;  // where the next one goes
  std::size_t count_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::ui
