// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/handler_list.h"

#include <utility>

namespace pallimo::base {

Subscription HandlerList::add(std::function<void()> handler) {
  auto entry = std::make_shared<Entry>();
  entry->handler = std::move(handler);
  {
    MutexLock lock(mutex_);
    entries_.push_back(entry);
  }
  return Subscription([list = weak_from_this(), entry = std::move(entry)] {
    entry->isCancelled = true;
    if (const auto self = list.lock()) self->remove(entry);
  });
}

void HandlerList::callAll() const {
  std::vector<std::shared_ptr<Entry>> entries;
  {
    MutexLock lock(mutex_);
    entries = entries_;
  }
  for (const auto& entry : entries) {
    if (!entry->isCancelled) entry->handler();
  }
}

void HandlerList::remove(const std::shared_ptr<Entry>& entry) {
  MutexLock lock(mutex_);
  std::erase(entries_, entry);
}

}  // namespace pallimo::base
