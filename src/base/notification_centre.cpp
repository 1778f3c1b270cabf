// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/notification_centre.h"

#include <utility>

#include "base/handler_list.h"

namespace pallimo::base {

NotificationCentre::NotificationCentre() = default;

NotificationCentre::~NotificationCentre() = default;

Subscription NotificationCentre::observe(std::string_view name, std::function<void()> observer) {
  std::shared_ptr<HandlerList> list;
  {
    MutexLock lock(mutex_);
    std::shared_ptr<HandlerList>& slot = lists_[std::string(name)];
    if (!slot) slot = std::make_shared<HandlerList>();
    list = slot;
  }
  return list->add(std::move(observer));
}

void NotificationCentre::post(std::string_view name) const {
  std::shared_ptr<HandlerList> list;
  {
    MutexLock lock(mutex_);
    if (const auto found = lists_.find(name); found != lists_.end()) list = found->second;
  }
  if (list) list->callAll();
}

}  // namespace pallimo::base
