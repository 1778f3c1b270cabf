// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace pallimo::ports {

/// A repeating timer; destroying it ends it. Main thread only.
class RepeatingTimer {
 public:
  virtual ~RepeatingTimer() = default;
};

/// The serial queue of a program's main thread (in the helper: of its only thread).
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  /// Runs `task` later on the main thread, after everything queued before. Any thread.
  virtual void async(std::function<void()> task) = 0;

  /// Runs `task` on the main thread when `delay` has passed. Any thread.
  virtual void after(std::chrono::milliseconds delay, std::function<void()> task) = 0;

  /// A timer that fires every `interval` on the main thread, also while a menu is open or a window
  /// is being resized; the first time one interval from now. Main thread only.
  [[nodiscard]] virtual std::unique_ptr<RepeatingTimer> every(std::chrono::milliseconds interval,
                                                              std::function<void()> tick) = 0;
};

}  // namespace pallimo::ports
