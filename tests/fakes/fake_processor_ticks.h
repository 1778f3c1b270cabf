// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/processor_ticks.h"

namespace pallimo::fakes {

/// Counters that the test sets or moves on; none can be read at first. Any thread.
class FakeProcessorTicks final : public ports::ProcessorTicks {
 public:
  using Counts = std::vector<ports::ProcessorTickCounts>;

  std::optional<Counts> read() override {
    base::MutexLock lock(mutex_);
    return counts_;
  }

  /// One entry a processor: user, system, idle, nice.
  void set(Counts counts) {
    base::MutexLock lock(mutex_);
    counts_ = std::move(counts);
  }

  /// Lets every counter of the processors that there are run on; a counter that is full begins
  /// anew.
  void advance(const Counts& by) {
    base::MutexLock lock(mutex_);
    if (!counts_) return;
    for (std::size_t cpu = 0; cpu < counts_->size() && cpu < by.size(); ++cpu) {
      for (std::size_t kind = 0; kind < by[cpu].size(); ++kind) {
        (*counts_)[cpu][kind] += by[cpu][kind];
      }
    }
  }

  /// From now on the call fails.
  void fail() {
    base::MutexLock lock(mutex_);
    counts_.reset();
  }

 private:
  base::Mutex mutex_;
  std::optional<Counts> counts_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
