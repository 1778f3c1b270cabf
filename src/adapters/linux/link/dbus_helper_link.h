// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "adapters/common/connection_delivery.h"
#include "adapters/linux/installation/helper_launcher.h"
#include "adapters/linux/link/dbus_channel.h"
#include "base/mutex.h"

namespace pallimo::adapters::linux {

class DBusLinkThread;

/// How patient a connection of the app is, and how much it keeps.
struct DBusLinkLimits {
  /// How long to look for a helper that serves, when there is one that can be started. Once it has
  /// let us in, there is no limit: a helper that is stopped is waited for.
  std::chrono::milliseconds opening{5000};
  /// The first pause between two tries; every further one is twice as long, up to the longest.
  std::chrono::milliseconds pause{10};
  std::chrono::milliseconds longestPause{500};
  /// How long an ended connection may take to hand over what was sent before.
  std::chrono::milliseconds flush{1000};
  /// So many messages wait for a helper that doesn't read, further ones are dropped. Of about 250
  /// bytes each: 1 MiB, more than an hour of samples.
  std::size_t waitingMessages = 4096;
};

/// The part of a connection that lives on the link's thread: opens it, starting the helper if need
/// be, writes what was sent, reads what comes, and closes it. Hands everything to a
/// ConnectionDelivery.
///
/// send(), resume() and close() may be called from any thread and never wait.
class DBusHelperLink final : public DBusChannel::Owner,
                             public std::enable_shared_from_this<DBusHelperLink> {
 public:
  struct Services {
    std::weak_ptr<DBusLinkThread> thread;  ///< once it is gone, nothing happens any more
    std::string address;                   ///< where the helper listens, empty: nowhere
    std::function<HelperStart()> launch;   ///< called on the link's thread
    DBusLinkLimits limits;
  };
  /// Reads a reply, on the link's thread.
  using ReplyReader = std::function<void(DBusMessage&)>;

  DBusHelperLink(Services services, std::shared_ptr<common::ConnectionDelivery> delivery);

  const std::shared_ptr<common::ConnectionDelivery>& delivery() const { return delivery_; }

  void resume();
  /// Sends a message when its turn comes. An error in reply is not read.
  void send(DBusMessagePtr message, ReplyReader reader = nullptr);
  /// Writes what was sent before, then ends. No reply is read any more.
  void close();

  /// Ends at once and silently. The link's thread.
  void abandon();

 private:
  using SteadyClock = std::chrono::steady_clock;
  enum class State { kSuspended, kOpening, kOpen, kClosed };
  struct Outgoing {
    DBusMessagePtr message;
    ReplyReader reader;
  };
  using OutgoingQueue = std::deque<Outgoing>;

  void onThread(void (DBusHelperLink::*task)());
  void afterDelay(std::chrono::milliseconds delay, void (DBusHelperLink::*task)());
  bool hasWaiting();
  std::size_t takeWaiting(OutgoingQueue& taken, std::size_t most);
  void dropWaiting();

  void open();
  void tryToOpen();
  bool connectOnce(bool* isNobodyServing);
  void tryAgainLater();
  void beginClosing();
  void writeWaiting();
  void fail();
  void finish();

  void channelDidOpen() override;
  bool channelDidReceive(DBusMessage& message) override;
  void channelDidProgress() override;
  void channelDidClose() override;
  bool readReply(DBusMessage& message);

  const Services services_;
  const std::shared_ptr<common::ConnectionDelivery> delivery_;

  // Any thread.
  base::Mutex mutex_;
  OutgoingQueue waiting_ PALLIMO_GUARDED_BY(mutex_);
  bool isWriteScheduled_ PALLIMO_GUARDED_BY(mutex_) = false;
  bool isClosedToSenders_ PALLIMO_GUARDED_BY(mutex_) = false;

  // The link's thread.
  State state_ = State::kSuspended;
  bool isClosing_ = false;
  SteadyClock::time_point openingDeadline_;
  std::chrono::milliseconds pause_;
  std::shared_ptr<DBusChannel> channel_;
  std::map<dbus_uint32_t, ReplyReader> readers_;  // by the serial number of their call
};

}  // namespace pallimo::adapters::linux
