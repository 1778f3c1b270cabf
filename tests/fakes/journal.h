// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/mutex.h"

namespace pallimo::fakes {

/// What happened, in order, as short texts. Any thread.
class Journal {
 public:
  void add(std::string entry) {
    base::MutexLock lock(mutex_);
    entries_.push_back(std::move(entry));
  }
  /// What was noted since the last take().
  std::vector<std::string> take() {
    base::MutexLock lock(mutex_);
    return std::exchange(entries_, {});
  }

 private:
  base::Mutex mutex_;
  std::vector<std::string> entries_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
