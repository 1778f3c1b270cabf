// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <utility>

#include "base/executor.h"
#include "base/mutex.h"

namespace pallimo::adapters::common {

/// The way of all deliveries of one connector to their executor, until the connector closes it. A
/// thread of the system may be on that way at the very moment: whether it is open is looked up
/// under the lock under which the task is posted, so that once close() has returned nobody uses
/// the executor any more, which may then be destroyed. Any thread.
class DeliveryGate {
 public:
  explicit DeliveryGate(base::Executor& executor) : executor_(&executor) {}

  /// Queues the task, or drops it (after the lock is given up) when the gate is closed.
  void post(std::function<void()> task) {
    base::MutexLock lock(mutex_);
    if (executor_ != nullptr) executor_->post(std::move(task));
  }
  void close() {
    base::MutexLock lock(mutex_);
    executor_ = nullptr;
  }
  bool isClosed() {
    base::MutexLock lock(mutex_);
    return executor_ == nullptr;
  }

 private:
  base::Mutex mutex_;
  base::Executor* executor_ PALLIMO_GUARDED_BY(mutex_);  // null once closed
};

}  // namespace pallimo::adapters::common
