// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "adapters/common/poll_loop.h"
#include "adapters/linux/link/dbus_messages.h"
#include "adapters/linux/link/dbus_watches.h"

namespace pallimo::adapters::linux {

/// One libdbus connection on a PollLoop, the same on both ends of the link: tells its owner what
/// happens, and ends without losing what was sent. The loop's thread only.
class DBusChannel final : public std::enable_shared_from_this<DBusChannel> {
 public:
  /// Hears of the channel: from the loop, never from within a call that it makes itself, but for
  /// authenticate().
  class Owner {
   public:
    virtual ~Owner() = default;
    /// Both sides have proven who they are. At most once, before any message.
    virtual void channelDidOpen() = 0;
    /// False when the message is none of the owner's: a call is then answered with an error.
    virtual bool channelDidReceive(DBusMessage& message) = 0;
    /// Something was read or written; there may be room to send more.
    virtual void channelDidProgress() = 0;
    /// The other side is gone, or the channel has ended as told. Once, last.
    virtual void channelDidClose() = 0;
  };

  /// Takes a connection over. Empty when memory is short.
  static std::shared_ptr<DBusChannel> attach(common::PollLoop& loop, DBusConnectionPtr connection,
                                             std::weak_ptr<Owner> owner);
  /// Ends the connection at once and silently.
  ~DBusChannel();
  DBusChannel(const DBusChannel&) = delete;
  DBusChannel& operator=(const DBusChannel&) = delete;

  bool isOpen() const { return isOpen_; }
  /// Bytes of messages that the system has not taken yet.
  std::int64_t outgoingBytes() const;
  /// The message's serial number, which its reply names; nothing when it can't be sent.
  std::optional<dbus_uint32_t> send(DBusMessage& message);

  /// What the channel waits for; the descriptor is -1 when it is closed.
  pollfd wanted() const { return watches_->wanted(); }
  /// Works on poll's `events` now, and opens the channel if that proves who the other side is.
  /// Messages and the end wait for the loop.
  void authenticate(short events);

  /// Hands what was sent to the system, tells the other side that nothing follows, and ends when
  /// that side ends too or `limit` has passed. What it still sends is dropped. Ending one's own
  /// direction first is what keeps the last messages: a socket that is closed over unread input
  /// makes the other side fail before it has read everything.
  void close(std::chrono::milliseconds limit);
  /// Ends at once.
  void abort();

 private:
  DBusChannel(common::PollLoop& loop, DBusConnectionPtr connection, std::weak_ptr<Owner> owner);
  bool start();
  void scheduleProcess();
  void process();
  void noticeAuthentication();
  void advanceClose();
  void finish();
  void release();

  static DBusHandlerResult filter(DBusConnection* connection, DBusMessage* message, void* self);
  static void dispatchStatusChanged(DBusConnection* connection, DBusDispatchStatus status,
                                    void* self);

  common::PollLoop& loop_;
  const std::weak_ptr<Owner> owner_;
  DBusConnectionPtr connection_;  // empty once closed
  std::shared_ptr<DBusWatches> watches_;
  bool isOpen_ = false;
  bool isScheduled_ = false;
  bool isProcessing_ = false;
  bool isClosing_ = false;
  bool isHalfClosed_ = false;
  bool isDisconnected_ = false;
};

}  // namespace pallimo::adapters::linux
