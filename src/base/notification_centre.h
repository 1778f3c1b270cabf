// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/mutex.h"
#include "base/subscription.h"

namespace pallimo::base {

class HandlerList;

/// Names of the notices that the app's parts send one another. They carry no object and no data.
namespace notification {
/// Every metric module empties its histories.
inline constexpr std::string_view kClearData = "ClearData";
/// A sample was distributed: refresh what is shown.
inline constexpr std::string_view kUpdateView = "UpdateView";
/// A freshly installed helper answered.
inline constexpr std::string_view kXPCDidInstall = "XPCDidInstall";
/// The installation failed, or the connection to the helper was interrupted.
inline constexpr std::string_view kXPCInstallError = "XPCInstallError";
}  // namespace notification

/// Named notices within the process. Thread-safe; observers run at once, on the posting thread, in
/// the order in which they subscribed, with no lock held.
class NotificationCentre {
 public:
  NotificationCentre();
  ~NotificationCentre();
  NotificationCentre(const NotificationCentre&) = delete;
  NotificationCentre& operator=(const NotificationCentre&) = delete;

  [[nodiscard]] Subscription observe(std::string_view name, std::function<void()> observer);
  void post(std::string_view name) const;

 private:
  mutable Mutex mutex_;
  std::map<std::string, std::shared_ptr<HandlerList>, std::less<>> lists_
      PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::base
