// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/mutex.h"
#include "ports/main_queue.h"

namespace pallimo::adapters::common {

/// One thread's event loop over poll(2): queued tasks, delays, repeating timers and descriptors.
/// The helper's only thread runs one; so does the thread behind each of the app's connections.
///
/// async() and after() may be called from any thread; everything else belongs to the thread that
/// calls run(). Sleeps without waking while nothing is due.
class PollLoop final : public ports::MainQueue {
 public:
  /// A descriptor that is being watched; destroying it ends the watch, also from inside its own
  /// handler. The descriptor is not closed.
  class Watch {
   public:
    virtual ~Watch() = default;
    /// Replaces the events waited for; 0 waits for errors and hang-ups alone.
    virtual void setEvents(short events) = 0;
  };

  PollLoop();
  ~PollLoop() override;
  PollLoop(const PollLoop&) = delete;
  PollLoop& operator=(const PollLoop&) = delete;

  /// Runs until stop(). Tasks that are queued when stop() is called before it are still run.
  void run();
  /// Makes run() return after the task, timer or handler under way. Any thread.
  void stop();

  /// Calls `handler` with poll's revents whenever one of `events` (POLLIN, POLLOUT) or an error or
  /// hang-up is there (level-triggered).
  [[nodiscard]] std::unique_ptr<Watch> watch(int descriptor, short events,
                                             std::function<void(short)> handler);

  void async(std::function<void()> task) override;
  void after(std::chrono::milliseconds delay, std::function<void()> task) override;
  [[nodiscard]] std::unique_ptr<ports::RepeatingTimer> every(std::chrono::milliseconds interval,
                                                             std::function<void()> tick) override;

 private:
  class Impl;
  const std::shared_ptr<Impl> impl_;
};

}  // namespace pallimo::adapters::common
