// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>

namespace pallimo::ports {

/// Threads for work that may take its time. Any thread may call it.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;

  /// Runs the task later, on a thread that is not the main thread; two tasks may run side by side.
  virtual void async(std::function<void()> task) = 0;
};

}  // namespace pallimo::ports
