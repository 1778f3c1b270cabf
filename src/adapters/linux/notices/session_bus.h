// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "adapters/common/poll_loop.h"
#include "adapters/linux/link/dbus_channel.h"
#include "adapters/linux/link/dbus_messages.h"

namespace pallimo::adapters::linux {

/// Calls to services on the session bus, over one private connection that nobody else in the
/// process knows: made for the first call, kept (some desktops take away what a program has shown
/// when it leaves the bus), and made anew for the first call after it was lost. The loop's thread
/// only; never blocks but in `open`.
class SessionBus final : public DBusChannel::Owner,
                         public std::enable_shared_from_this<SessionBus> {
 public:
  /// A new private connection to the bus, not registered yet; empty when there is none.
  using Open = std::function<DBusConnectionPtr()>;
  /// Takes the reply, which may be an error; null when there is none: no bus, or it was lost, or
  /// nobody answered in time.
  using Done = std::function<void(DBusMessage* reply)>;

  /// Nobody is waited for longer than `limit` for a call. The loop outlives the bus.
  SessionBus(common::PollLoop& loop, Open open, std::chrono::milliseconds limit);

  /// Sends the call. `done` is called exactly once unless the bus is destroyed before, perhaps from
  /// within this call.
  void call(DBusMessagePtr message, Done done);
  /// Waits for nobody any more: what is under way is done, without a reply.
  void abandon();

  void channelDidOpen() override {}
  bool channelDidReceive(DBusMessage& message) override;
  void channelDidProgress() override {}
  void channelDidClose() override;

 private:
  struct Call {
    std::uint64_t number;
    dbus_uint32_t serial;  ///< of the message, on this connection
    Done done;
  };

  bool connect();
  void disconnect();
  bool sendHello();
  bool finish(dbus_uint32_t serial, DBusMessage* reply);
  void giveUp(std::uint64_t number);

  common::PollLoop& loop_;
  const Open open_;
  const std::chrono::milliseconds limit_;
  std::shared_ptr<DBusChannel> channel_;  // empty while there is no connection
  dbus_uint32_t helloSerial_ = 0;
  bool isRegistered_ = false;
  std::uint64_t lastNumber_ = 0;
  std::vector<Call> calls_;  // sent and not done
};

/// Opens the first of the addresses that somebody listens at. Waits while a socket there is
/// overrun with connections, and for nothing else.
DBusConnectionPtr openFirstBus(const std::vector<std::string>& addresses);

}  // namespace pallimo::adapters::linux
