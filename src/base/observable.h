// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>

#include "base/subscription.h"

namespace pallimo::base {

class HandlerList;

/// Something whose changes others follow. Models announce a change explicitly, not on every write
/// of a field.
///
/// Any thread may observe and publish; observers run on the publishing thread, in the order in
/// which they subscribed, with no lock held, so that they may subscribe, cancel and publish
/// themselves. A Subscription may outlive the Observable.
class Observable {
 public:
  Observable();
  virtual ~Observable();
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  [[nodiscard]] Subscription observe(std::function<void()> observer);

 protected:
  /// Calls every observer once.
  void publish() const;

 private:
  const std::shared_ptr<HandlerList> observers_;
};

}  // namespace pallimo::base
