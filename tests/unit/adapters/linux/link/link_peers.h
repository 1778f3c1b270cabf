// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <string>

#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux::link_test {

inline sockaddr_un socketAddress(const char* path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
  return address;
}

inline const sockaddr* generic(const sockaddr_un& address) {
  return static_cast<const sockaddr*>(static_cast<const void*>(&address));
}

/// A plain socket, for what libdbus would never say. Calls nothing that is unsafe after a fork.
class RawSocket {
 public:
  explicit RawSocket(const char* path, int flags = 0) {
    descriptor_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    const auto address = socketAddress(path);
    isConnected_ = connect(descriptor_, generic(address), sizeof address) == 0;
  }
  explicit RawSocket(const StateFolder& folder) : RawSocket(folder.helperSocket().c_str()) {}
  ~RawSocket() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  RawSocket(RawSocket&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)), isConnected_(other.isConnected_) {}
  RawSocket(const RawSocket&) = delete;
  RawSocket& operator=(const RawSocket&) = delete;

  bool isConnected() const { return isConnected_; }
  bool write(std::string_view bytes) {
    return send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
  }
  void endWriting() { shutdown(descriptor_, SHUT_WR); }

  /// Reads up to and including `end`, or to the end of the stream, into `buffer`. Returns the
  /// number of bytes, negative when the deadline passed.
  ssize_t readUntil(char end, char* buffer, std::size_t size) {
    std::size_t length = 0;
    while (length < size) {
      pollfd waiting = {descriptor_, POLLIN, 0};
      if (poll(&waiting, 1, 60'000) <= 0) return -1;
      if (read(descriptor_, buffer + length, 1) <= 0) break;
      if (buffer[length++] == end) break;
    }
    return static_cast<ssize_t>(length);
  }
  std::string readLine() {
    char buffer[512];
    const auto length = readUntil('\n', buffer, sizeof buffer);
    return length < 0 ? "deadline" : std::string(buffer, static_cast<std::size_t>(length));
  }
  /// Whether the other side ends the stream.
  bool meetsEnd() {
    char buffer[4096];
    ssize_t length = 0;
    do {
      length = readUntil('\0', buffer, sizeof buffer);
    } while (length > 0);
    return length == 0;
  }

 private:
  int descriptor_ = -1;
  bool isConnected_ = false;
};

/// A helper that listens and never accepts, with the shortest queue.
class RawListener {
 public:
  explicit RawListener(const StateFolder& folder)
      : descriptor_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto address = socketAddress(folder.helperSocket().c_str());
    isListening_ =
        bind(descriptor_, generic(address), sizeof address) == 0 && listen(descriptor_, 0) == 0;
  }
  ~RawListener() { close(descriptor_); }
  RawListener(const RawListener&) = delete;
  RawListener& operator=(const RawListener&) = delete;

  bool isListening() const { return isListening_; }

 private:
  const int descriptor_;
  bool isListening_ = false;
};

/// The hexadecimal text in which a user proves to be `uid`.
inline std::string authExternal(unsigned long uid) {
  std::string line("\0AUTH EXTERNAL ", 15);
  for (const char digit : std::to_string(uid)) line += std::string("3") + digit;
  return line + "\r\n";
}

/// A blocking libdbus client that can say anything.
class RawBus {
 public:
  explicit RawBus(const StateFolder& folder)
      : connection_(dbus_connection_open_private(unixSocketAddress(folder.helperSocket()).c_str(),
                                                 nullptr)) {
    dbus_connection_set_exit_on_disconnect(connection_.get(), FALSE);
    dbus_connection_set_max_message_size(connection_.get(), 128L << 20);
  }
  ~RawBus() { dbus_connection_close(connection_.get()); }
  RawBus(const RawBus&) = delete;
  RawBus& operator=(const RawBus&) = delete;

  DBusConnection* get() { return connection_.get(); }
  /// The name of the error that answers `message`, or "reply".
  std::string ask(DBusMessagePtr message) {
    DBusError error;
    dbus_error_init(&error);
    const DBusMessagePtr reply(dbus_connection_send_with_reply_and_block(
        connection_.get(), message.get(), 60'000, &error));
    std::string answer = reply ? "reply" : error.name;
    dbus_error_free(&error);
    return answer;
  }
  void sendAndFlush(const DBusMessagePtr& message) {
    dbus_connection_send(connection_.get(), message.get(), nullptr);
    dbus_connection_flush(connection_.get());
  }
  /// Reads until the other side ends the connection.
  bool meetsEnd() {
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (dbus_connection_get_is_connected(connection_.get()) != FALSE) {
      dbus_connection_read_write(connection_.get(), 100);
      if (std::chrono::steady_clock::now() > deadline) return false;
    }
    return true;
  }

 private:
  DBusConnectionPtr connection_;
};

/// A helper in a process of its own. Make it before the test has threads.
class HelperProcess {
 public:
  explicit HelperProcess(const StateFolder& folder, uid_t user = geteuid()) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    pid_ = fork();
    if (pid_ == 0) serve(folder, user, ends[1]);
    close(ends[1]);
    char ready = 0;
    hasStarted_ = read(ends[0], &ready, 1) == 1;
    close(ends[0]);
  }
  ~HelperProcess() {
    if (pid_ > 0) kill();
  }
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  bool hasStarted() const { return hasStarted_; }
  void kill() {
    ::kill(pid_, SIGKILL);
    waitpid(std::exchange(pid_, -1), nullptr, 0);
  }
  /// Returns when the process has stopped.
  void pause() {
    ::kill(pid_, SIGSTOP);
    int status = 0;
    waitpid(pid_, &status, WUNTRACED);
  }
  void resume() { ::kill(pid_, SIGCONT); }

 private:
  [[noreturn]] static void serve(const StateFolder& folder, uid_t user, int ready) {
    if (user != geteuid() && setresuid(user, user, user) != 0) _exit(1);
    common::PollLoop loop;
    EchoDelegate delegate(std::make_shared<EventLog>());
    DBusHelperListener listener(loop, folder);
    if (!listener.start(delegate) || write(ready, "!", 1) != 1) _exit(1);
    loop.run();
    _exit(0);
  }

  pid_t pid_ = -1;
  bool hasStarted_ = false;
};

}  // namespace pallimo::adapters::linux::link_test
