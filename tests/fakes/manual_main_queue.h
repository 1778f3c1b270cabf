// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/main_queue.h"

namespace pallimo::fakes {

/// A main queue whose time moves only when the test says so. Tasks may be queued from any thread;
/// run(), advance() and the timers belong to the test's thread.
class ManualMainQueue final : public ports::MainQueue {
 public:
  void async(std::function<void()> task) override {
    base::MutexLock lock(mutex_);
    tasks_.push_back(std::move(task));
  }

  void after(std::chrono::milliseconds delay, std::function<void()> task) override {
    base::MutexLock lock(mutex_);
    delayed_.push_back({now_ + delay, std::move(task)});
  }

  std::unique_ptr<ports::RepeatingTimer> every(std::chrono::milliseconds interval,
                                               std::function<void()> tick) override {
    auto timer = std::make_shared<Timer>();
    timer->interval = interval;
    timer->tick = std::move(tick);
    base::MutexLock lock(mutex_);
    timer->due = now_ + interval;
    timers_.push_back(timer);
    return std::make_unique<Handle>(timer);
  }

  /// Runs what is queued and what that queues, without moving the clock.
  void run() {
    while (runOne()) {
    }
  }

  /// Moves the clock, runs each timer tick and delayed task at its time, in order of time.
  void advance(std::chrono::milliseconds by) {
    run();
    const auto end = now() + by;
    while (runNextDue(std::max(end, now()))) run();
    {
      base::MutexLock lock(mutex_);
      now_ = std::max(now_, end);
    }
    run();
  }

  /// Time goes by while the main thread is busy: called from within a task, moves the clock and
  /// runs nothing. What is due meanwhile runs late, a repeating timer once.
  void keepBusy(std::chrono::milliseconds by) {
    base::MutexLock lock(mutex_);
    now_ += by;
  }

  std::chrono::milliseconds now() const {
    base::MutexLock lock(mutex_);
    return now_;
  }

  std::size_t queuedTasks() const {
    base::MutexLock lock(mutex_);
    return tasks_.size();
  }

  /// Timers that somebody still holds.
  std::size_t liveTimers() const {
    base::MutexLock lock(mutex_);
    std::size_t count = 0;
    for (const auto& timer : timers_) count += timer->isLive ? 1 : 0;
    return count;
  }

 private:
  struct Timer {
    std::chrono::milliseconds due{};
    std::chrono::milliseconds interval{};
    std::function<void()> tick;
    bool isLive = true;
  };

  class Handle final : public ports::RepeatingTimer {
   public:
    explicit Handle(std::shared_ptr<Timer> timer) : timer_(std::move(timer)) {}
    ~Handle() override { timer_->isLive = false; }

   private:
    std::shared_ptr<Timer> timer_;
  };

  struct Delayed {
    std::chrono::milliseconds due{};
    std::function<void()> task;
  };

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

  bool runNextDue(std::chrono::milliseconds end) {
    std::function<void()> task;
    {
      base::MutexLock lock(mutex_);
      std::shared_ptr<Timer> timer;
      for (const auto& candidate : timers_) {
        if (!candidate->isLive || candidate->due > end) continue;
        if (!timer || candidate->due < timer->due) timer = candidate;
      }
      auto delayed = delayed_.end();
      for (auto entry = delayed_.begin(); entry != delayed_.end(); ++entry) {
        if (entry->due > end) continue;
        if (delayed == delayed_.end() || entry->due < delayed->due) delayed = entry;
      }
      if (delayed != delayed_.end() && (!timer || delayed->due <= timer->due)) {
        now_ = std::max(now_, delayed->due);
        task = std::move(delayed->task);
        delayed_.erase(delayed);
      } else if (timer) {
        now_ = std::max(now_, timer->due);
        while (timer->due <= now_) timer->due += timer->interval;
        task = timer->tick;
      } else {
        return false;
      }
    }
    task();
    return true;
  }

  mutable base::Mutex mutex_;
  std::chrono::milliseconds now_ PALLIMO_GUARDED_BY(mutex_){0};
  std::deque<std::function<void()>> tasks_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<Delayed> delayed_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<std::shared_ptr<Timer>> timers_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
