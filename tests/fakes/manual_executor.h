// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "base/executor.h"
#include "base/mutex.h"

namespace pallimo::fakes {

/// An executor whose tasks run when the test says so, on the test's thread.
class ManualExecutor final : public base::Executor {
 public:
  void post(std::function<void()> task) override {
    base::MutexLock lock(mutex_);
    tasks_.push_back(std::move(task));
  }

  /// Runs the oldest task; false when there is none.
  bool runOne() {
    std::function<void()> task;
    {
      base::MutexLock lock(mutex_);
      if (tasks_.empty()) return false;
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
    return true;
  }

  /// Runs what is queued and what that queues.
  void run() {
    while (runOne()) {
    }
  }

 private:
  base::Mutex mutex_;
  std::deque<std::function<void()>> tasks_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
