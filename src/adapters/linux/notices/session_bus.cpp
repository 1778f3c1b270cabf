// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/session_bus.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace pallimo::adapters::linux {

namespace {

/// What is sent to us is answers of a few bytes; whoever sends more is cut off.
constexpr long kLongestMessage = 1L << 20;

}  // namespace

SessionBus::SessionBus(common::PollLoop& loop, Open open, std::chrono::milliseconds limit)
    : loop_(loop), open_(std::move(open)), limit_(limit) {}

void SessionBus::call(DBusMessagePtr message, Done done) {
  auto serial = channel_ ? channel_->send(*message) : std::nullopt;
  if (!serial && connect()) serial = channel_->send(*message);
  if (!serial) {
    done(nullptr);
    return;
  }
  const auto number = ++lastNumber_;
  calls_.push_back({number, *serial, std::move(done)});
  loop_.after(limit_, [weak = weak_from_this(), number] {
    if (const auto self = weak.lock()) self->giveUp(number);
  });
}

bool SessionBus::connect() {
  disconnect();
  auto connection = open_();
  if (!connection) return false;
  dbus_connection_set_max_message_size(connection.get(), kLongestMessage);
  dbus_connection_set_max_message_unix_fds(connection.get(), 0);
  channel_ = DBusChannel::attach(loop_, std::move(connection), weak_from_this());
  if (channel_ && sendHello()) return true;
  channel_.reset();
  return false;
}

// The bus wants this message first, but does not want its answer waited for.
bool SessionBus::sendHello() {
  isRegistered_ = false;
  const DBusMessagePtr hello(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                          DBUS_INTERFACE_DBUS, "Hello"));
  const auto serial = hello ? channel_->send(*hello) : std::nullopt;
  helloSerial_ = serial.value_or(0);
  return serial.has_value();
}

bool SessionBus::channelDidReceive(DBusMessage& message) {
  const int type = dbus_message_get_type(&message);
  if (type != DBUS_MESSAGE_TYPE_METHOD_RETURN && type != DBUS_MESSAGE_TYPE_ERROR) return false;
  const auto serial = dbus_message_get_reply_serial(&message);
  if (serial != helloSerial_) return finish(serial, &message);
  isRegistered_ = type == DBUS_MESSAGE_TYPE_METHOD_RETURN;
  if (!isRegistered_) channel_->abort();
  return true;
}

void SessionBus::channelDidClose() { disconnect(); }

void SessionBus::disconnect() {
  channel_.reset();
  abandon();
}

void SessionBus::abandon() {
  for (const auto& call : std::exchange(calls_, {})) call.done(nullptr);
}

bool SessionBus::finish(dbus_uint32_t serial, DBusMessage* reply) {
  const auto found = std::find_if(calls_.begin(), calls_.end(),
                                  [serial](const Call& call) { return call.serial == serial; });
  if (found == calls_.end()) return false;
  const auto done = std::move(found->done);
  calls_.erase(found);
  done(reply);
  return true;
}

void SessionBus::giveUp(std::uint64_t number) {
  const auto found = std::find_if(calls_.begin(), calls_.end(),
                                  [number](const Call& call) { return call.number == number; });
  if (found == calls_.end()) return;
  finish(found->serial, nullptr);
  // One slow service is no reason to leave the bus; a bus that does not even let us in is.
  if (!isRegistered_) disconnect();
}

DBusConnectionPtr openFirstBus(const std::vector<std::string>& addresses) {
  for (const auto& address : addresses) {
    if (auto* const connection = dbus_connection_open_private(address.c_str(), nullptr)) {
      return DBusConnectionPtr(connection);
    }
  }
  return nullptr;
}

}  // namespace pallimo::adapters::linux
