// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/observable.h"

#include <utility>

#include "base/handler_list.h"

namespace pallimo::base {

Observable::Observable() : observers_(std::make_shared<HandlerList>()) {}

Observable::~Observable() = default;

Subscription Observable::observe(std::function<void()> observer) {
  return observers_->add(std::move(observer));
}

void Observable::publish() const { observers_->callAll(); }

}  // namespace pallimo::base
