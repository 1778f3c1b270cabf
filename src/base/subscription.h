// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <utility>

namespace pallimo::base {

/// The right to be called; ends when it is destroyed or cancelled. Move-only.
///
/// Cancelling does not wait: a call that is under way on another thread at that moment runs to its
/// end. Handlers therefore hold their object weakly (std::weak_ptr) when threads may meet.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      cancel();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }
  ~Subscription() { cancel(); }

  void cancel() {
    if (auto action = std::exchange(cancel_, nullptr)) action();
  }

 private:
  std::function<void()> cancel_;
};

}  // namespace pallimo::base
