// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_channel.h"

#include <sys/socket.h>

#include <utility>

namespace pallimo::adapters::linux {

std::shared_ptr<DBusChannel> DBusChannel::attach(common::PollLoop& loop,
                                                 DBusConnectionPtr connection,
                                                 std::weak_ptr<Owner> owner) {
  std::shared_ptr<DBusChannel> channel(
      new DBusChannel(loop, std::move(connection), std::move(owner)));
  if (!channel->start()) return nullptr;
  return channel;
}

DBusChannel::DBusChannel(common::PollLoop& loop, DBusConnectionPtr connection,
                         std::weak_ptr<Owner> owner)
    : loop_(loop), owner_(std::move(owner)), connection_(std::move(connection)) {}

DBusChannel::~DBusChannel() { release(); }

bool DBusChannel::start() {
  watches_ = std::make_shared<DBusWatches>(loop_, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->process();
  });
  dbus_connection_set_exit_on_disconnect(connection_.get(), FALSE);
  dbus_connection_set_dispatch_status_function(connection_.get(), dispatchStatusChanged, this,
                                               nullptr);
  if (dbus_connection_add_filter(connection_.get(), filter, this, nullptr) == FALSE ||
      !watches_->attach(*connection_)) {
    return false;
  }
  scheduleProcess();
  return true;
}

std::int64_t DBusChannel::outgoingBytes() const {
  return connection_ ? dbus_connection_get_outgoing_size(connection_.get()) : 0;
}

std::optional<dbus_uint32_t> DBusChannel::send(DBusMessage& message) {
  dbus_uint32_t serial = 0;
  if (!connection_ || isClosing_ || isDisconnected_ ||
      dbus_connection_send(connection_.get(), &message, &serial) == FALSE) {
    return std::nullopt;
  }
  return serial;
}

void DBusChannel::authenticate(short events) {
  if (!connection_) return;
  watches_->handleNow(events);
  noticeAuthentication();
  scheduleProcess();
}

void DBusChannel::close(std::chrono::milliseconds limit) {
  if (!connection_ || std::exchange(isClosing_, true)) return;
  loop_.after(limit, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->abort();
  });
  scheduleProcess();
}

void DBusChannel::abort() {
  if (!connection_) return;
  isClosing_ = true;
  dbus_connection_close(connection_.get());
  scheduleProcess();
}

void DBusChannel::scheduleProcess() {
  if (std::exchange(isScheduled_, true)) return;
  loop_.async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->isScheduled_ = false;
    self->process();
  });
}

void DBusChannel::process() {
  if (!connection_ || std::exchange(isProcessing_, true)) return;
  const auto self = shared_from_this();
  noticeAuthentication();
  while (dbus_connection_dispatch(connection_.get()) == DBUS_DISPATCH_DATA_REMAINS) {
  }
  isProcessing_ = false;
  if (isDisconnected_) {
    finish();
  } else if (isClosing_) {
    advanceClose();
  } else if (const auto owner = owner_.lock()) {
    owner->channelDidProgress();
  }
}

void DBusChannel::noticeAuthentication() {
  if (isOpen_ || isClosing_ || dbus_connection_get_is_authenticated(connection_.get()) == FALSE) {
    return;
  }
  isOpen_ = true;
  if (const auto owner = owner_.lock()) owner->channelDidOpen();
}

void DBusChannel::advanceClose() {
  if (!isOpen_) {
    abort();
    return;
  }
  if (isHalfClosed_ || dbus_connection_has_messages_to_send(connection_.get()) != FALSE) return;
  isHalfClosed_ = true;
  int descriptor = -1;
  if (dbus_connection_get_unix_fd(connection_.get(), &descriptor) != FALSE) {
    shutdown(descriptor, SHUT_WR);
  }
}

void DBusChannel::finish() {
  release();
  if (const auto owner = owner_.lock()) owner->channelDidClose();
}

void DBusChannel::release() {
  if (!connection_) return;
  dbus_connection_set_dispatch_status_function(connection_.get(), nullptr, nullptr, nullptr);
  dbus_connection_remove_filter(connection_.get(), filter, this);
  watches_->detach(*connection_);
  dbus_connection_close(connection_.get());
  connection_.reset();
}

DBusHandlerResult DBusChannel::filter(DBusConnection*, DBusMessage* message, void* self) {
  auto& channel = *static_cast<DBusChannel*>(self);
  if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected") != FALSE) {
    // Nobody else can send this one: libdbus drops connections that use its local path.
    channel.isDisconnected_ = true;
    return DBUS_HANDLER_RESULT_HANDLED;
  }
  if (channel.isClosing_) return DBUS_HANDLER_RESULT_HANDLED;
  const auto owner = channel.owner_.lock();
  const bool isKnown = owner && owner->channelDidReceive(*message);
  return isKnown ? DBUS_HANDLER_RESULT_HANDLED : DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

void DBusChannel::dispatchStatusChanged(DBusConnection*, DBusDispatchStatus status, void* self) {
  auto& channel = *static_cast<DBusChannel*>(self);
  if (status != DBUS_DISPATCH_DATA_REMAINS) return;
  if (!channel.isProcessing_ && !channel.watches_->isHandling()) channel.scheduleProcess();
}

}  // namespace pallimo::adapters::linux
