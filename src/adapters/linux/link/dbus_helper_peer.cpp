// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_helper_peer.h"

#include <functional>
#include <string>
#include <utility>

namespace pallimo::adapters::linux {

std::shared_ptr<DBusHelperPeer> DBusHelperPeer::create(common::PollLoop& loop,
                                                       DBusConnectionPtr connection,
                                                       const DBusListenerLimits& limits,
                                                       Owner& owner) {
  std::shared_ptr<DBusHelperPeer> peer(new DBusHelperPeer(limits, owner));
  peer->channel_ = DBusChannel::attach(loop, std::move(connection), peer);
  if (!peer->channel_) return nullptr;
  loop.after(limits.authentication, [weak = std::weak_ptr<DBusHelperPeer>(peer)] {
    const auto self = weak.lock();
    if (self && self->channel_ && !self->isOpen()) self->channel_->abort();
  });
  return peer;
}

void DBusHelperPeer::forget() {
  owner_ = nullptr;
  service_.reset();
  channel_.reset();
}

void DBusHelperPeer::powermetricsResult(std::optional<base::Bytes> document) {
  if (channel_) send(makePowermetricsResult(document));
}

void DBusHelperPeer::close() {
  if (channel_) channel_->close(limits_.flush);
}

void DBusHelperPeer::channelDidOpen() {
  if (owner_ != nullptr) service_ = owner_->peerDidOpen(shared_from_this());
}

bool DBusHelperPeer::channelDidReceive(DBusMessage& message) {
  const auto call = readHelperCall(message);
  if (!call || !service_) return false;
  answer(message, *call);
  return true;
}

void DBusHelperPeer::channelDidProgress() {
  // Also the errors that libdbus itself has sent count.
  if (channel_ && channel_->outgoingBytes() > limits_.outgoingBytes) channel_->abort();
}

void DBusHelperPeer::channelDidClose() {
  const auto self = shared_from_this();
  channel_.reset();
  service_.reset();
  if (owner_ != nullptr) std::exchange(owner_, nullptr)->peerDidClose(self);
}

void DBusHelperPeer::answer(DBusMessage& message, const HelperCall& call) {
  const auto service = service_;  // it may end this peer
  switch (call.kind) {
    case HelperCall::Kind::kIsResponding:
      service->isResponding(replyTo<bool>(message));
      break;
    case HelperCall::Kind::kUnInstallHelper:
      service->unInstallHelper();
      break;
    case HelperCall::Kind::kGetVersion:
      service->getVersion(replyTo<std::string>(message));
      break;
    case HelperCall::Kind::kRequestPowermetrics:
      service->requestPowermetrics(call.msSampling, call.includeGPU);
      break;
    case HelperCall::Kind::kCloseHelper:
      service->closeHelper();
      break;
  }
}

void DBusHelperPeer::send(const DBusMessagePtr& message) {
  if (!message || !channel_) return;
  channel_->send(*message);
  channelDidProgress();
}

template <class Value>
std::function<void(Value)> DBusHelperPeer::replyTo(DBusMessage& message) {
  std::shared_ptr<DBusMessage> call(dbus_message_ref(&message), &dbus_message_unref);
  return [weak = weak_from_this(), call](const Value& value) {
    const auto self = weak.lock();
    if (self && dbus_message_get_no_reply(call.get()) == FALSE) self->send(makeReply(*call, value));
  };
}

}  // namespace pallimo::adapters::linux
