// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_watches.h"

#include <utility>
#include <vector>

namespace pallimo::adapters::linux {

namespace {

short pollEvents(DBusWatch* watch) {
  const unsigned flags = dbus_watch_get_flags(watch);
  int events = 0;
  if ((flags & DBUS_WATCH_READABLE) != 0) events |= POLLIN;
  if ((flags & DBUS_WATCH_WRITABLE) != 0) events |= POLLOUT;
  return static_cast<short>(events);
}

unsigned watchFlags(short events) {
  unsigned flags = 0;
  if ((events & POLLIN) != 0) flags |= DBUS_WATCH_READABLE;
  if ((events & POLLOUT) != 0) flags |= DBUS_WATCH_WRITABLE;
  if ((events & POLLHUP) != 0) flags |= DBUS_WATCH_HANGUP;
  if ((events & (POLLERR | POLLNVAL)) != 0) flags |= DBUS_WATCH_ERROR;
  return flags;
}

}  // namespace

DBusWatches::DBusWatches(common::PollLoop& loop, std::function<void()> didHandle)
    : loop_(loop), didHandle_(std::move(didHandle)) {}

DBusWatches::~DBusWatches() = default;

bool DBusWatches::attach(DBusConnection& connection) {
  return dbus_connection_set_watch_functions(&connection, added, removed, toggled, this, nullptr) !=
         FALSE;
}

bool DBusWatches::attach(DBusServer& server) {
  return dbus_server_set_watch_functions(&server, added, removed, toggled, this, nullptr) != FALSE;
}

void DBusWatches::detach(DBusConnection& connection) {
  dbus_connection_set_watch_functions(&connection, nullptr, nullptr, nullptr, nullptr, nullptr);
  watches_.clear();
}

void DBusWatches::detach(DBusServer& server) {
  dbus_server_set_watch_functions(&server, nullptr, nullptr, nullptr, nullptr, nullptr);
  watches_.clear();
}

pollfd DBusWatches::wanted() const {
  pollfd wanted = {-1, 0, 0};
  for (const auto& [watch, polled] : watches_) {
    if (!polled) continue;
    wanted.fd = dbus_watch_get_unix_fd(watch);
    wanted.events = static_cast<short>(wanted.events | pollEvents(watch));
  }
  return wanted;
}

void DBusWatches::handleNow(short events) {
  std::vector<DBusWatch*> enabled;
  for (const auto& [watch, polled] : watches_) {
    if (polled) enabled.push_back(watch);
  }
  const bool wasHandling = std::exchange(isHandling_, true);
  for (auto* const watch : enabled) {
    // Handling one watch may have ended or disabled the next.
    const auto entry = watches_.find(watch);
    if (entry == watches_.end() || !entry->second) continue;
    const auto mine = static_cast<short>(events & (pollEvents(watch) | POLLERR | POLLHUP));
    if (mine != 0) dbus_watch_handle(watch, watchFlags(mine));
  }
  isHandling_ = wasHandling;
}

dbus_bool_t DBusWatches::added(DBusWatch* watch, void* self) {
  static_cast<DBusWatches*>(self)->update(watch);
  return TRUE;
}

void DBusWatches::removed(DBusWatch* watch, void* self) {
  static_cast<DBusWatches*>(self)->watches_.erase(watch);
}

void DBusWatches::toggled(DBusWatch* watch, void* self) {
  static_cast<DBusWatches*>(self)->update(watch);
}

void DBusWatches::update(DBusWatch* watch) {
  auto& polled = watches_[watch];
  if (dbus_watch_get_enabled(watch) == FALSE) {
    // Not merely without events: poll would report a hang-up for ever.
    polled.reset();
    return;
  }
  if (polled) return;
  polled = loop_.watch(dbus_watch_get_unix_fd(watch), pollEvents(watch),
                       [weak = weak_from_this(), watch](short events) {
                         if (const auto self = weak.lock()) self->handle(watch, events);
                       });
}

void DBusWatches::handle(DBusWatch* watch, short events) {
  isHandling_ = true;
  dbus_watch_handle(watch, watchFlags(events));
  isHandling_ = false;
  didHandle_();
}

}  // namespace pallimo::adapters::linux
