// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>

#include "base/mutex.h"

namespace pallimo::helper {

/// Counts the clients that have connected and said nothing yet: any user's program may knock, and
/// none of them has been checked. Any thread.
class ClientWaits {
 public:
  explicit ClientWaits(std::size_t most) : most_(most) {}

  /// One more; false when there are too many, and then it is not counted.
  bool begin() {
    base::MutexLock lock(mutex_);
    if (count_ >= most_) return false;
    ++count_;
    return true;
  }

  /// One less: it has spoken, or gone.
  void end() {
    {
      base::MutexLock lock(mutex_);
      --count_;
    }
    changed_.notify_all();
  }

  /// Returns when there are none, and after `limit` in any case: true when there are none.
  bool finish(std::chrono::milliseconds limit) {
    base::MutexLock lock(mutex_);
    return changed_.wait_for(lock, limit,
                             [this]() PALLIMO_REQUIRES(mutex_) { return count_ == 0; });
  }

 private:
  const std::size_t most_;
  base::Mutex mutex_;
  std::condition_variable_any changed_;
  std::size_t count_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::helper
