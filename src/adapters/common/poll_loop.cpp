// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/poll_loop.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <limits>
#include <map>
#include <system_error>
#include <utility>

#include "adapters/common/process_calls.h"

namespace pallimo::adapters::common {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr short kAlwaysReported = POLLERR | POLLHUP | POLLNVAL;

struct WatchEntry {
  int descriptor;
  short events;
  std::function<void(short)> handler;
  bool isLive = true;
};

struct TimerEntry {
  SteadyClock::time_point due;
  std::chrono::milliseconds interval;
  std::function<void()> tick;
  bool isLive = true;
};

template <class Entry>
void forget(std::vector<std::shared_ptr<Entry>>& entries, const std::shared_ptr<Entry>& entry) {
  entry->isLive = false;
  entries.erase(std::remove(entries.begin(), entries.end(), entry), entries.end());
}

/// poll's time-out for a moment; rounded up, so that the loop never spins until the moment comes.
int timeoutUntil(SteadyClock::time_point due) {
  const auto now = SteadyClock::now();
  if (due <= now) return 0;
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - now).count();
  return static_cast<int>(std::min<std::int64_t>(wait, std::numeric_limits<int>::max()));
}

}  // namespace

class PollLoop::Impl {
 public:
  Impl() {
    if (const int error = makePipe(woken_, waker_); error != 0) {
      throw std::system_error(error, std::generic_category(), "pipe");
    }
  }
  ~Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void run() {
    while (runQueuedTasks()) {
      waitForEvents();
      runDueTimers();
      callHandlers();
    }
  }

  /// An empty task is the mark at which run() returns.
  void queue(std::function<void()> task) {
    base::MutexLock lock(mutex_);
    if (!task) isStopping_ = true;
    tasks_.push_back(std::move(task));
    wake();
  }

  void queueAt(SteadyClock::time_point due, std::function<void()> task) {
    base::MutexLock lock(mutex_);
    delayed_.emplace(due, std::move(task));
    wake();
  }

  /// Drops what was never run. Tasks may own watches, timers and more tasks, so no lock is held.
  void dropTasks() {
    std::deque<std::function<void()>> tasks;
    std::multimap<SteadyClock::time_point, std::function<void()>> delayed;
    {
      base::MutexLock lock(mutex_);
      tasks.swap(tasks_);
      delayed.swap(delayed_);
    }
  }

  std::vector<std::shared_ptr<WatchEntry>> watches;
  std::vector<std::shared_ptr<TimerEntry>> timers;

 private:
  void wake() PALLIMO_REQUIRES(mutex_) {
    if (std::exchange(isWoken_, true)) return;
    // Can't fail or block: there is at most one byte in the pipe.
    [[maybe_unused]] const ssize_t written = write(waker_.get(), "", 1);
  }

  void fallAsleep() {
    base::MutexLock lock(mutex_);
    if (!std::exchange(isWoken_, false)) return;
    char byte = 0;
    [[maybe_unused]] const ssize_t got = read(woken_.get(), &byte, 1);
  }

  bool isStopping() {
    base::MutexLock lock(mutex_);
    return isStopping_;
  }

  /// Runs what is queued now, not what that queues: descriptors get their turn in between.
  /// False when it met the mark of stop().
  bool runQueuedTasks() {
    std::size_t count = 0;
    {
      base::MutexLock lock(mutex_);
      count = tasks_.size();
    }
    for (; count > 0; --count) {
      std::function<void()> task;
      {
        base::MutexLock lock(mutex_);
        task = std::move(tasks_.front());
        tasks_.pop_front();
        if (!task) isStopping_ = false;
      }
      if (!task) return false;
      task();
    }
    return true;
  }

  int timeout() {
    auto due = SteadyClock::time_point::max();
    for (const auto& timer : timers) due = std::min(due, timer->due);
    base::MutexLock lock(mutex_);
    if (!tasks_.empty()) return 0;
    if (!delayed_.empty()) due = std::min(due, delayed_.begin()->first);
    return due == SteadyClock::time_point::max() ? -1 : timeoutUntil(due);
  }

  void waitForEvents() {
    polled_ = watches;
    descriptors_.clear();
    for (const auto& entry : polled_) {
      descriptors_.push_back({entry->descriptor, entry->events, 0});
    }
    descriptors_.push_back({woken_.get(), POLLIN, 0});
    if (poll(descriptors_.data(), descriptors_.size(), timeout()) < 0) polled_.clear();
    fallAsleep();
  }

  /// Timers and delayed tasks in order of their time.
  void runDueTimers() {
    const auto now = SteadyClock::now();
    while (!isStopping()) {
      auto task = takeDue(now);
      if (!task) return;
      task();
    }
  }

  std::function<void()> takeDue(SteadyClock::time_point now) {
    std::shared_ptr<TimerEntry> timer;
    for (const auto& entry : timers) {
      if (entry->due <= now && (!timer || entry->due < timer->due)) timer = entry;
    }
    {
      base::MutexLock lock(mutex_);
      const auto first = delayed_.begin();
      if (first != delayed_.end() && first->first <= now &&
          (!timer || first->first <= timer->due)) {
        auto task = std::move(first->second);
        delayed_.erase(first);
        return task;
      }
    }
    if (!timer) return nullptr;
    timer->due += timer->interval;
    // A loop that was held up does not make good for the ticks it missed.
    if (timer->due <= now) timer->due = now + timer->interval;
    return [timer] { timer->tick(); };
  }

  /// The entries are held while their handlers run, so that a handler may end its own watch; one
  /// that a handler before it has ended, or that no longer waits for these events, is passed over.
  void callHandlers() {
    for (std::size_t index = 0; index < polled_.size(); ++index) {
      const auto& entry = polled_[index];
      const auto wanted = static_cast<short>(entry->events | kAlwaysReported);
      const auto events = static_cast<short>(descriptors_[index].revents & wanted);
      if (events == 0 || !entry->isLive) continue;
      if (isStopping()) break;
      entry->handler(events);
    }
    polled_.clear();
  }

  Descriptor woken_;  // reads from waker_
  Descriptor waker_;

  // Any thread.
  base::Mutex mutex_;
  std::deque<std::function<void()>> tasks_ PALLIMO_GUARDED_BY(mutex_);
  std::multimap<SteadyClock::time_point, std::function<void()>> delayed_ PALLIMO_GUARDED_BY(mutex_);
  bool isWoken_ PALLIMO_GUARDED_BY(mutex_) = false;
  bool isStopping_ PALLIMO_GUARDED_BY(mutex_) = false;

  // The loop's thread, as the two lists above.
  std::vector<std::shared_ptr<WatchEntry>> polled_;
  std::vector<pollfd> descriptors_;
};

PollLoop::PollLoop() : impl_(std::make_shared<Impl>()) {}

PollLoop::~PollLoop() { impl_->dropTasks(); }

void PollLoop::run() { impl_->run(); }

void PollLoop::stop() { impl_->queue(nullptr); }

std::unique_ptr<PollLoop::Watch> PollLoop::watch(int descriptor, short events,
                                                 std::function<void(short)> handler) {
  class Handle final : public Watch {
   public:
    Handle(std::weak_ptr<Impl> loop, std::shared_ptr<WatchEntry> entry)
        : loop_(std::move(loop)), entry_(std::move(entry)) {}
    ~Handle() override {
      if (const auto loop = loop_.lock()) forget(loop->watches, entry_);
    }
    void setEvents(short events) override { entry_->events = events; }

   private:
    const std::weak_ptr<Impl> loop_;
    const std::shared_ptr<WatchEntry> entry_;
  };
  auto entry =
      std::make_shared<WatchEntry>(WatchEntry{descriptor, events, std::move(handler), true});
  impl_->watches.push_back(entry);
  return std::make_unique<Handle>(impl_, std::move(entry));
}

void PollLoop::async(std::function<void()> task) {
  if (task) impl_->queue(std::move(task));
}

void PollLoop::after(std::chrono::milliseconds delay, std::function<void()> task) {
  if (task) impl_->queueAt(SteadyClock::now() + delay, std::move(task));
}

std::unique_ptr<ports::RepeatingTimer> PollLoop::every(std::chrono::milliseconds interval,
                                                       std::function<void()> tick) {
  class Handle final : public ports::RepeatingTimer {
   public:
    Handle(std::weak_ptr<Impl> loop, std::shared_ptr<TimerEntry> entry)
        : loop_(std::move(loop)), entry_(std::move(entry)) {}
    ~Handle() override {
      if (const auto loop = loop_.lock()) forget(loop->timers, entry_);
    }

   private:
    const std::weak_ptr<Impl> loop_;
    const std::shared_ptr<TimerEntry> entry_;
  };
  const auto step = std::max(interval, std::chrono::milliseconds(1));
  auto entry = std::make_shared<TimerEntry>(
      TimerEntry{SteadyClock::now() + step, step, std::move(tick), true});
  impl_->timers.push_back(entry);
  return std::make_unique<Handle>(impl_, std::move(entry));
}

}  // namespace pallimo::adapters::common
