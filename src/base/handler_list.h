// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/mutex.h"
#include "base/subscription.h"

namespace pallimo::base {

/// The handlers of one event. Thread-safe; handlers run without the lock, in subscription order.
/// Lives in a std::shared_ptr so that subscriptions may outlive its owner.
class HandlerList : public std::enable_shared_from_this<HandlerList> {
 public:
  [[nodiscard]] Subscription add(std::function<void()> handler);
  void callAll() const;

 private:
  struct Entry {
    std::uint64_t id;
    std::shared_ptr<const std::function<void()>> handler;
  };

  void remove(std::uint64_t id);

  mutable Mutex mutex_;
  std::uint64_t nextId_ PALLIMO_GUARDED_BY(mutex_) = 0;
  std::vector<Entry> entries_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::base
