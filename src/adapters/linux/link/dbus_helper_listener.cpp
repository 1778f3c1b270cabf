// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/link/dbus_helper_listener.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace pallimo::adapters::linux {

namespace {

using SteadyClock = std::chrono::steady_clock;

int millisecondsUntil(SteadyClock::time_point deadline) {
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000));
}

}  // namespace

DBusHelperListener::DBusHelperListener(common::PollLoop& loop, StateFolder folder,
                                       DBusListenerLimits limits)
    : loop_(loop), folder_(std::move(folder)), limits_(limits) {
  dbus_threads_init_default();
  // What the program does about SIGPIPE is its own affair; libdbus writes without raising it.
  dbus_connection_set_change_sigpipe(FALSE);
}

DBusHelperListener::~DBusHelperListener() {
  // Nobody is told any more, so clients in the queue are let go instead of being served.
  delegate_ = nullptr;
  if (server_) acceptBacklog();
  for (const auto& peer : peers_) peer->forget();
}

bool DBusHelperListener::start(Delegate& delegate) {
  if (server_) return false;
  lock_ = HelperLock::take(folder_.helperLock());
  if (!lock_) return false;
  delegate_ = &delegate;
  if (listen()) return true;
  lock_.reset();
  return false;
}

bool DBusHelperListener::listen() {
  const std::string address = unixSocketAddress(folder_.helperSocket());
  server_.reset(dbus_server_listen(address.c_str(), nullptr));
  if (!server_) return false;
  // libdbus opens its sockets to everybody; the folder is closed to others, and so is this.
  constexpr mode_t kOwnerOnly = 0600;
  chmod(folder_.helperSocket().c_str(), kOwnerOnly);
  const char* mechanisms[] = {"EXTERNAL", nullptr};
  dbus_server_set_new_connection_function(server_.get(), connectionArrived, this, nullptr);
  watches_ = std::make_shared<DBusWatches>(loop_, [] {});
  if (dbus_server_set_auth_mechanisms(server_.get(), mechanisms) != FALSE &&
      watches_->attach(*server_)) {
    return true;
  }
  dbus_server_disconnect(server_.get());
  server_.reset();
  return false;
}

void DBusHelperListener::stop() {
  if (!server_) return;
  acceptBacklog();
  finishAuthentications();
}

void DBusHelperListener::acceptBacklog() {
  unlink(folder_.helperSocket().c_str());
  // From here on the system refuses also those who had found the path before. What is queued
  // already can still be accepted.
  shutdown(watches_->wanted().fd, SHUT_RD);
  do {
    hasArrived_ = false;
    watches_->handleNow(POLLIN);
  } while (hasArrived_);
  watches_->detach(*server_);
  dbus_server_disconnect(server_.get());
  server_.reset();
  lock_.reset();
}

void DBusHelperListener::finishAuthentications() {
  const auto deadline = SteadyClock::now() + limits_.authentication;
  while (waitForAuthentications(deadline)) {
  }
}

/// One round; false when nobody is left to wait for.
bool DBusHelperListener::waitForAuthentications(SteadyClock::time_point deadline) {
  std::vector<pollfd> descriptors;
  std::vector<std::shared_ptr<DBusHelperPeer>> waiting;
  for (const auto& peer : peers_) {
    if (peer->channel() == nullptr || peer->isOpen()) continue;
    const pollfd wanted = peer->channel()->wanted();
    if (wanted.fd < 0) continue;
    descriptors.push_back(wanted);
    waiting.push_back(peer);
  }
  if (waiting.empty()) return false;
  const int timeout = millisecondsUntil(deadline);
  poll(descriptors.data(), descriptors.size(), timeout);
  for (std::size_t index = 0; index < waiting.size(); ++index) {
    auto* const channel = waiting[index]->channel();
    if (channel == nullptr) continue;
    if (descriptors[index].revents != 0) channel->authenticate(descriptors[index].revents);
    if (timeout == 0 && !channel->isOpen()) channel->abort();
  }
  return timeout > 0;
}

bool DBusHelperListener::admits(unsigned long uid) { return uid == geteuid(); }

void DBusHelperListener::connectionArrived(DBusServer*, DBusConnection* connection, void* self) {
  auto& listener = *static_cast<DBusHelperListener*>(self);
  listener.hasArrived_ = true;
  listener.admit(connection);
}

dbus_bool_t DBusHelperListener::admitsUser(DBusConnection*, unsigned long uid, void*) {
  return admits(uid) ? TRUE : FALSE;
}

void DBusHelperListener::admit(DBusConnection* connection) {
  // libdbus closes a connection that nobody takes.
  if (delegate_ == nullptr || peers_.size() >= limits_.peers ||
      unauthenticatedPeers() >= limits_.unauthenticatedPeers) {
    return;
  }
  dbus_connection_set_unix_user_function(connection, admitsUser, nullptr, nullptr);
  dbus_connection_set_allow_anonymous(connection, FALSE);
  dbus_connection_set_max_message_size(connection, static_cast<long>(limits_.incomingMessageBytes));
  dbus_connection_set_max_message_unix_fds(connection, 0);
  auto peer = DBusHelperPeer::create(loop_, DBusConnectionPtr(dbus_connection_ref(connection)),
                                     limits_, *this);
  if (peer) peers_.insert(std::move(peer));
}

std::size_t DBusHelperListener::unauthenticatedPeers() const {
  return static_cast<std::size_t>(std::count_if(peers_.begin(), peers_.end(),
                                                [](const auto& peer) { return !peer->isOpen(); }));
}

std::shared_ptr<helper_link::protocol::XPCProtocol> DBusHelperListener::peerDidOpen(
    const std::shared_ptr<DBusHelperPeer>& peer) {
  accepted_.insert(peer);
  return delegate_->accept(peer);
}

void DBusHelperListener::peerDidClose(const std::shared_ptr<DBusHelperPeer>& peer) {
  peers_.erase(peer);
  if (accepted_.erase(peer) != 0) delegate_->disconnected(peer);
}

}  // namespace pallimo::adapters::linux
