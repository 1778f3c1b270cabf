// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>

#include "adapters/common/poll_loop.h"
#include "adapters/linux/installation/helper_lock.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/link/dbus_helper_peer.h"
#include "adapters/linux/link/dbus_listener_limits.h"
#include "adapters/linux/link/dbus_watches.h"
#include "ports/helper_listener.h"

namespace pallimo::adapters::linux {

/// The helper's end of the link: a D-Bus server, without a bus, on the state folder's socket.
/// Everything on the loop's thread.
///
/// Who holds the state folder's lock may bind the socket, and nobody unlinks it without the lock:
/// libdbus alone would let a second server take the path of a running one. stop() takes the path
/// away, shuts the queue of those who wait to be accepted, and empties it, so that a client is
/// either served here or refused by the system; then it gives the lock up.
class DBusHelperListener final : public ports::HelperListener, private DBusHelperPeer::Owner {
 public:
  DBusHelperListener(common::PollLoop& loop, StateFolder folder, DBusListenerLimits limits = {});
  /// Stops, and ends every connection at once and silently.
  ~DBusHelperListener() override;
  DBusHelperListener(const DBusHelperListener&) = delete;
  DBusHelperListener& operator=(const DBusHelperListener&) = delete;

  /// The delegate must stay until the listener is destroyed. False also when the socket's path is
  /// longer than kLongestSocketPath. May be called again after stop().
  bool start(Delegate& delegate) override;
  /// Waits, serving nobody else, for clients that are still proving who they are, as long as their
  /// time limit at most: so that afterwards every client is known.
  void stop() override;

  /// Whether a user's programs are let in: our own alone, root's not.
  static bool admits(unsigned long uid);

 private:
  static void connectionArrived(DBusServer* server, DBusConnection* connection, void* self);
  static dbus_bool_t admitsUser(DBusConnection* connection, unsigned long uid, void* self);

  bool listen();
  void admit(DBusConnection* connection);
  void acceptBacklog();
  void finishAuthentications();
  bool waitForAuthentications(std::chrono::steady_clock::time_point deadline);
  std::size_t unauthenticatedPeers() const;

  std::shared_ptr<helper_link::protocol::XPCProtocol> peerDidOpen(
      const std::shared_ptr<DBusHelperPeer>& peer) override;
  void peerDidClose(const std::shared_ptr<DBusHelperPeer>& peer) override;

  struct ServerUnref {
    void operator()(DBusServer* server) const { dbus_server_unref(server); }
  };

  common::PollLoop& loop_;
  const StateFolder folder_;
  const DBusListenerLimits limits_;
  Delegate* delegate_ = nullptr;
  std::optional<HelperLock> lock_;
  std::unique_ptr<DBusServer, ServerUnref> server_;  // empty while not listening
  std::shared_ptr<DBusWatches> watches_;
  std::set<std::shared_ptr<DBusHelperPeer>> peers_;
  std::set<std::shared_ptr<DBusHelperPeer>> accepted_;  // those of them that the delegate knows
  bool hasArrived_ = false;
};

}  // namespace pallimo::adapters::linux
