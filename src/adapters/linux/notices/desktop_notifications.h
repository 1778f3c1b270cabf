// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "adapters/linux/notices/notice_thread.h"
#include "base/mutex.h"
#include "ports/console.h"
#include "ports/user_notifications.h"

namespace pallimo::adapters::linux {

/// The desktop's notifications, over the session bus; where no desktop takes a notice, it becomes
/// one line on the console, "<title>: <subtitle>". Any thread; nobody ever waits for the desktop,
/// but at the end.
///
/// A notice whose time has come is shown as the delegate says: not without a banner, and silently
/// without a sound. While there is no delegate it is shown as it asks. Each stands for itself,
/// whatever its identifier.
///
/// There is no thread and no connection before the first notice.
class DesktopNotifications final : public ports::UserNotifications {
 public:
  /// The addresses are tried in order for each connection (see session_bus_address.h). The console
  /// outlives the object.
  DesktopNotifications(ports::Console& console, std::vector<std::string> busAddresses,
                       NoticeLimits limits = {});
  /// Shows what still waits for its time, and waits for the desktop's answers, at most twice the
  /// limit for that. What was not answered then is written to the console; it is lost only when
  /// the bus is overrun with connections. Not from within a delegate.
  ~DesktopNotifications() override;
  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;

  void setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) override;
  /// Granted, before the call returns, on the caller's thread: desktops have no such question, and
  /// what the user does not want to see they keep back themselves.
  void requestAuthorization(std::uint32_t options, AuthorizationAnswer answer) override;
  void add(ports::UserNotification notification) override;

 private:
  bool hasThread();

  ports::Console& console_;
  const std::shared_ptr<NoticeThread> noticeThread_;
  base::Mutex mutex_;
  std::thread thread_ PALLIMO_GUARDED_BY(mutex_);  // of noticeThread_, from the first notice on
};

}  // namespace pallimo::adapters::linux
