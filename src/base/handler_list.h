// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "base/mutex.h"
#include "base/subscription.h"

namespace pallimo::base {

/// The handlers of one event. Thread-safe; handlers run without the lock, in subscription order.
/// One that is cancelled while a round is under way is not called any more in that round. Lives in
/// a std::shared_ptr so that subscriptions may outlive its owner.
class HandlerList : public std::enable_shared_from_this<HandlerList> {
 public:
  [[nodiscard]] Subscription add(std::function<void()> handler);
  void callAll() const;

 private:
  struct Entry {
    std::function<void()> handler;
    std::atomic<bool> isCancelled = false;
  };

  void remove(const std::shared_ptr<Entry>& entry);

  mutable Mutex mutex_;
  std::vector<std::shared_ptr<Entry>> entries_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::base
