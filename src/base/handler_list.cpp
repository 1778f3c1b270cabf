// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/handler_list.h"

#include <utility>

namespace pallimo::base {

Subscription HandlerList::add(std::function<void()> handler) {
  std::uint64_t id = 0;
  {
    MutexLock lock(mutex_);
    id = nextId_++;
    entries_.push_back({id, std::make_shared<const std::function<void()>>(std::move(handler))});
  }
  return Subscription([weak = weak_from_this(), id] {
    if (auto list = weak.lock()) list->remove(id);
  });
}

void HandlerList::callAll() const {
  std::vector<Entry> entries;
  {
    MutexLock lock(mutex_);
    entries = entries_;
  }
  for (const Entry& entry : entries) (*entry.handler)();
}

void HandlerList::remove(std::uint64_t id) {
  // The handler is destroyed after the lock is let go: its captures may cancel other subscriptions.
  std::shared_ptr<const std::function<void()>> removed;
  MutexLock lock(mutex_);
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    if (entry->id != id) continue;
    removed = std::move(entry->handler);
    entries_.erase(entry);
    return;
  }
}

}  // namespace pallimo::base
