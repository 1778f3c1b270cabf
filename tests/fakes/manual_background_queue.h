// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/background_queue.h"

namespace pallimo::fakes {

/// A background queue whose tasks run when the test says so, each on a thread of its own that is
/// waited for. Any thread may queue.
class ManualBackgroundQueue final : public ports::BackgroundQueue {
 public:
  /// From now on tasks run as soon as they are queued.
  void runAtOnce() { isPrompt_ = true; }
  /// Runs inside every async(), on the caller's thread. Set before use.
  void setOnAsync(std::function<void()> hook) { onAsync_ = std::move(hook); }

  void async(std::function<void()> task) override {
    if (onAsync_) onAsync_();
    if (isPrompt_) return runElsewhere(task);
    base::MutexLock lock(mutex_);
    tasks_.push_back(std::move(task));
  }

  /// Runs what is queued and what that queues.
  void run() {
    while (const auto task = takeOne()) runElsewhere(task);
  }

  std::size_t queuedTasks() const {
    base::MutexLock lock(mutex_);
    return tasks_.size();
  }

 private:
  static void runElsewhere(const std::function<void()>& task) { std::thread(task).join(); }

  std::function<void()> takeOne() {
    base::MutexLock lock(mutex_);
    if (tasks_.empty()) return nullptr;
    std::function<void()> task = std::move(tasks_.front());
    tasks_.erase(tasks_.begin());
    return task;
  }

  bool isPrompt_ = false;
  std::function<void()> onAsync_;
  mutable base::Mutex mutex_;
  std::vector<std::function<void()>> tasks_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
