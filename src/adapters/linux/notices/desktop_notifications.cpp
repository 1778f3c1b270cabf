// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/desktop_notifications.h"

#include <dbus/dbus.h>

#include <system_error>
#include <utility>

#include "adapters/linux/notices/notice_text.h"

namespace pallimo::adapters::linux {

DesktopNotifications::DesktopNotifications(ports::Console& console,
                                           std::vector<std::string> busAddresses,
                                           NoticeLimits limits)
    : console_(console),
      noticeThread_(std::make_shared<NoticeThread>(console, std::move(busAddresses), limits)) {
  dbus_threads_init_default();
  // What the program does about SIGPIPE is its own affair; libdbus writes without raising it.
  dbus_connection_set_change_sigpipe(FALSE);
}

DesktopNotifications::~DesktopNotifications() {
  std::thread thread;
  {
    base::MutexLock lock(mutex_);
    thread.swap(thread_);
  }
  if (!thread.joinable()) return;
  noticeThread_->end();
  if (noticeThread_->waitForEnd()) {
    thread.join();
  } else {
    thread.detach();
  }
}

void DesktopNotifications::setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) {
  noticeThread_->setDelegate(std::move(delegate));
}

void DesktopNotifications::requestAuthorization(std::uint32_t, AuthorizationAnswer answer) {
  if (answer) answer(true, std::nullopt);
}

void DesktopNotifications::add(ports::UserNotification notification) {
  if (hasThread()) {
    noticeThread_->add(std::move(notification));
  } else {
    console_.writeLine(noticeLine(notification.title, notification.subtitle));
  }
}

bool DesktopNotifications::hasThread() {
  base::MutexLock lock(mutex_);
  try {
    if (!thread_.joinable()) {
      thread_ = std::thread([noticeThread = noticeThread_] { noticeThread->run(); });
    }
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace pallimo::adapters::linux
