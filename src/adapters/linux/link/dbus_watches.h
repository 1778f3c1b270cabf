// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>
#include <poll.h>

#include <functional>
#include <map>
#include <memory>

#include "adapters/common/poll_loop.h"

namespace pallimo::adapters::linux {

/// Drives the descriptors of one libdbus connection or server from a PollLoop. Both ends of the
/// link use it. The loop's thread only.
///
/// libdbus's time-outs are not driven because we set none: calls wait for ever, and what must not
/// last for ever has a delay of its own in the loop.
class DBusWatches : public std::enable_shared_from_this<DBusWatches> {
 public:
  /// `didHandle` is called after libdbus has read or written.
  DBusWatches(common::PollLoop& loop, std::function<void()> didHandle);
  ~DBusWatches();
  DBusWatches(const DBusWatches&) = delete;
  DBusWatches& operator=(const DBusWatches&) = delete;

  /// False when memory is short. Whoever attaches must detach before the last reference goes.
  bool attach(DBusConnection& connection);
  bool attach(DBusServer& server);
  void detach(DBusConnection& connection);
  void detach(DBusServer& server);

  /// Whether libdbus is reading or writing at this moment: didHandle will follow.
  bool isHandling() const { return isHandling_; }
  /// What libdbus waits for at this moment; the descriptor is -1 when it waits for nothing.
  pollfd wanted() const;
  /// Lets libdbus work now on poll's `events`, for example accept one client. Without didHandle.
  void handleNow(short events);

 private:
  static dbus_bool_t added(DBusWatch* watch, void* self);
  static void removed(DBusWatch* watch, void* self);
  static void toggled(DBusWatch* watch, void* self);

  void update(DBusWatch* watch);
  void handle(DBusWatch* watch, short events);

  common::PollLoop& loop_;
  const std::function<void()> didHandle_;
  std::map<DBusWatch*, std::unique_ptr<common::PollLoop::Watch>> watches_;  // null: not enabled
  bool isHandling_ = false;
};

}  // namespace pallimo::adapters::linux
