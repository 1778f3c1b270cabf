// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

#include "base/mutex.h"
#include "ui/panel.h"

namespace pallimo::ui {

/// When the newest samples arrived, index 0 the newest: as many as a graph shows.
///
/// Written where the histories are, one entry a sample, and cleared with them, so that an index
/// means the same sample here and there. Any thread.
class SampleTimes {
 public:
  using TimePoint = std::chrono::system_clock::time_point;

  /// Makes `time` the newest; the oldest gives way when there are kGraphLength.
  void add(TimePoint time);
  void clear();
  /// Nothing for a sample that is not there, or no longer.
  std::optional<TimePoint> at(std::size_t index) const;

 private:
  mutable base::Mutex mutex_;
  std::array<TimePoint, kGraphLength> times_ PALLIMO_GUARDED_BY(mutex_){};
  std::size_t next_ PALLIMO_GUARDED_BY(mutex_) = 0;  // where the next one goes
  std::size_t count_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::ui
