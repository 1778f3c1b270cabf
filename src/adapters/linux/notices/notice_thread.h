// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "adapters/common/poll_loop.h"
#include "adapters/linux/link/dbus_messages.h"
#include "adapters/linux/notices/session_bus.h"
#include "base/mutex.h"
#include "ports/console.h"
#include "ports/user_notifications.h"

namespace pallimo::adapters::linux {

/// How long notices wait for others.
struct NoticeLimits {
  /// For the bus and for the desktop to take one notice. Covers, as a rule, the start of a
  /// notification service. Not for a bus that is overrun with connections: the system holds up who
  /// connects to it, and notices wait until it lets go.
  std::chrono::milliseconds answer{2000};
  /// For all that are under way when the app ends.
  std::chrono::milliseconds end{500};
};

/// The thread behind the desktop notifications: waits for each notice's time, asks the delegate,
/// calls the desktop, and writes the notice to the console when the desktop did not take it.
class NoticeThread {
 public:
  /// The console is used until waitForEnd() has returned.
  NoticeThread(ports::Console& console, std::vector<std::string> busAddresses, NoticeLimits limits);

  /// The thread itself. Returns when everything is done after end().
  void run();

  // Any thread.
  void setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate);
  void add(ports::UserNotification notice);
  /// Shows what still waits for its time, and lets run() return when nothing is under way any more
  /// or the limit for that has passed.
  void end();
  /// Waits until run() has returned. False when the system holds the thread up in connecting to an
  /// overrun bus: it then ends by itself, using nothing but this object.
  bool waitForEnd();

 private:
  // The thread's own.
  void accept(ports::UserNotification notice);
  void show(std::uint64_t number);
  void callDesktop(const ports::UserNotification& notice, bool hasSound);
  void write(const ports::UserNotification& notice);
  void finishOne();
  void showAllAndEnd();
  DBusConnectionPtr openBus();
  std::uint32_t presentationOf(const ports::UserNotification& notice);

  bool beginOpening();
  bool endOpening();

  ports::Console& console_;
  const std::vector<std::string> busAddresses_;
  const NoticeLimits limits_;
  common::PollLoop loop_;

  // The thread's own.
  std::shared_ptr<SessionBus> bus_;
  std::map<std::uint64_t, ports::UserNotification> waiting_;  // for their time
  std::uint64_t lastNumber_ = 0;
  std::size_t underWay_ = 0;  // calls to the desktop
  bool isEnding_ = false;

  base::Mutex mutex_;
  std::condition_variable_any ended_;
  std::weak_ptr<ports::UserNotificationsDelegate> delegate_ PALLIMO_GUARDED_BY(mutex_);
  bool isOpening_ PALLIMO_GUARDED_BY(mutex_) = false;
  bool isTooLate_ PALLIMO_GUARDED_BY(mutex_) = false;    // to open a connection
  bool isAbandoned_ PALLIMO_GUARDED_BY(mutex_) = false;  // only while isOpening_
  bool hasEnded_ PALLIMO_GUARDED_BY(mutex_) = false;
};

}  // namespace pallimo::adapters::linux
