// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>

#include "adapters/linux/link/dbus_channel.h"
#include "adapters/linux/link/dbus_listener_limits.h"
#include "ports/helper_listener.h"

namespace pallimo::adapters::linux {

/// One client of the helper, from the moment it has reached the socket. The loop's thread only.
class DBusHelperPeer final : public ports::HelperPeer,
                             public DBusChannel::Owner,
                             public std::enable_shared_from_this<DBusHelperPeer> {
 public:
  /// Hears of the peer. Outlives it, or has called forget().
  class Owner {
   public:
    virtual ~Owner() = default;
    /// The peer has proven that it belongs to the admitted user. Returns who answers it.
    virtual std::shared_ptr<helper_link::protocol::XPCProtocol> peerDidOpen(
        const std::shared_ptr<DBusHelperPeer>& peer) = 0;
    /// The peer is gone, opened or not. Once, last.
    virtual void peerDidClose(const std::shared_ptr<DBusHelperPeer>& peer) = 0;
  };

  /// Takes a connection over; empty when memory is short.
  static std::shared_ptr<DBusHelperPeer> create(common::PollLoop& loop,
                                                DBusConnectionPtr connection,
                                                const DBusListenerLimits& limits, Owner& owner);

  bool isOpen() const { return channel_ && channel_->isOpen(); }
  /// The channel, or nullptr when the peer is gone.
  DBusChannel* channel() const { return channel_.get(); }
  /// Ends the connection at once and silently.
  void forget();

  void powermetricsResult(std::optional<base::Bytes> document) override;
  void close() override;

 private:
  DBusHelperPeer(const DBusListenerLimits& limits, Owner& owner)
      : limits_(limits), owner_(&owner) {}

  void channelDidOpen() override;
  bool channelDidReceive(DBusMessage& message) override;
  void channelDidProgress() override;
  void channelDidClose() override;

  void answer(DBusMessage& message, const HelperCall& call);
  void send(const DBusMessagePtr& message);
  template <class Value>
  std::function<void(Value)> replyTo(DBusMessage& message);

  const DBusListenerLimits limits_;
  Owner* owner_;  // null once forgotten
  std::shared_ptr<DBusChannel> channel_;
  std::shared_ptr<helper_link::protocol::XPCProtocol> service_;
};

}  // namespace pallimo::adapters::linux
