// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <dbus/dbus.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "adapters/common/posix_process.h"
#include "adapters/linux/link/dbus_messages.h"
#include "ports/console.h"
#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux::desktop_test {

using link_test::EventLog;
using link_test::kDeadline;
using link_test::TemporaryFolder;
using Lines = std::vector<std::string>;

/// A console whose lines can be waited for.
class WaitingConsole final : public ports::Console {
 public:
  void writeLine(std::string_view line) override { log.add(std::string(line)); }
  EventLog log;
};

/// A real message bus of the test's own, in a process of its own, that admits everything.
class TestBus {
 public:
  explicit TestBus(const TemporaryFolder& folder) : folder_(folder.path()) {}
  ~TestBus() { stop(); }
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  /// Lines for the bus's configuration. Before start().
  void configure(const std::string& lines) { configuration_ += lines; }

  testing::AssertionResult start() {
    const auto program = find("dbus-daemon");
    if (!program) return testing::AssertionFailure() << "install the package dbus-daemon";
    std::ofstream(folder_ + "/bus.conf")
        << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>"
        << address()
        << "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
           "<allow own=\"*\"/></policy>"
        << configuration_ << "</busconfig>\n";
    auto started =
        common::PosixProcess::start({*program,
                                     {"--config-file=" + folder_ + "/bus.conf", "--nofork",
                                      "--nopidfile", "--print-address=1", "--print-pid=1"},
                                     {},
                                     0,
                                     {}});
    if (const auto* error = std::get_if<int>(&started)) {
      return testing::AssertionFailure() << *program << ": error " << *error;
    }
    auto& running = std::get<common::PosixProcess::Started>(started);
    process_.emplace(std::move(running.process));
    std::istringstream printed(readLines(running.output.get(), 2));
    std::string printedAddress;
    printed >> printedAddress >> pid_;
    if (pid_ <= 0) return testing::AssertionFailure() << *program << " ended";
    return testing::AssertionSuccess();
  }

  /// Ends the bus; everybody on it loses the connection.
  void stop() {
    if (!process_) return;
    process_->killGroup();
    pollfd ended = {process_->exitDescriptor(), POLLIN, 0};
    poll(&ended, 1, 60'000);
    process_->reap();
    process_.reset();
  }

  /// From now on it answers nobody.
  void freeze() { kill(pid_, SIGSTOP); }
  void thaw() { kill(pid_, SIGCONT); }

  std::string address() const { return "unix:path=" + folder_ + "/bus"; }

 private:
  static std::optional<std::string> find(const std::string& name) {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
      const auto program = folder + "/" + name;
      if (access(program.c_str(), X_OK) == 0) return program;
    }
    return std::nullopt;
  }

  /// What is printed up to so many line ends, or less when the program ends before.
  static std::string readLines(int descriptor, int count) {
    std::string text;
    pollfd readable = {descriptor, POLLIN, 0};
    while (count > 0 && poll(&readable, 1, 60'000) > 0) {
      char byte = 0;
      if (read(descriptor, &byte, 1) != 1) break;
      text += byte;
      if (byte == '\n') --count;
    }
    return text;
  }

  const std::string folder_;
  std::string configuration_;
  std::optional<common::PosixProcess> process_;
  pid_t pid_ = 0;
};

/// One call of Notify as it arrived.
struct NotifyCall {
  std::string sender;
  std::string signature;
  std::string appName;
  std::uint32_t replacesId = 99;
  std::string appIcon;
  std::string summary;
  std::string body;
  int actions = 0;
  std::map<std::string, std::string> hints;  ///< a boolean as "true" or "false"
  std::int32_t expireTimeout = 99;
  bool mayStartService = false;
};

/// Reads a message's values one by one.
class Values {
 public:
  explicit Values(DBusMessage& message) { dbus_message_iter_init(&message, &iterator_); }

  std::string text() { return take<const char*>(); }
  template <class Value>
  Value take() {
    Value value{};
    dbus_message_iter_get_basic(&iterator_, &value);
    dbus_message_iter_next(&iterator_);
    return value;
  }
  int elements() {
    const int count = dbus_message_iter_get_element_count(&iterator_);
    dbus_message_iter_next(&iterator_);
    return count;
  }
  std::map<std::string, std::string> hints() {
    std::map<std::string, std::string> hints;
    for (Values map = inside(); map.type() != DBUS_TYPE_INVALID; map.next()) {
      Values entry = map.inside();
      const auto name = entry.text();
      Values value = entry.inside();
      if (value.type() == DBUS_TYPE_BOOLEAN) {
        hints[name] = value.take<dbus_bool_t>() != FALSE ? "true" : "false";
      } else {
        hints[name] = value.text();
      }
    }
    next();
    return hints;
  }

 private:
  Values() = default;
  int type() { return dbus_message_iter_get_arg_type(&iterator_); }
  void next() { dbus_message_iter_next(&iterator_); }
  Values inside() {
    Values inner;
    dbus_message_iter_recurse(&iterator_, &inner.iterator_);
    return inner;
  }

  DBusMessageIter iterator_ = DBUS_MESSAGE_ITER_INIT_CLOSED;
};

inline NotifyCall readNotify(DBusMessage& message) {
  NotifyCall call;
  const char* const sender = dbus_message_get_sender(&message);
  call.sender = sender == nullptr ? "" : sender;
  call.signature = dbus_message_get_signature(&message);
  if (call.signature != "susssasa{sv}i") return call;
  Values values(message);
  call.appName = values.text();
  call.replacesId = values.take<std::uint32_t>();
  call.appIcon = values.text();
  call.summary = values.text();
  call.body = values.text();
  call.actions = values.elements();
  call.hints = values.hints();
  call.expireTimeout = values.take<std::int32_t>();
  call.mayStartService = dbus_message_get_auto_start(&message) != FALSE;
  return call;
}

/// A desktop's notification service, on a thread of its own.
class DesktopService {
 public:
  enum class Manner { kAnswers, kRefuses, kHangs };

  explicit DesktopService(const TestBus& bus, Manner manner = Manner::kAnswers) : manner_(manner) {
    dbus_threads_init_default();
    connection_.reset(dbus_connection_open_private(bus.address().c_str(), nullptr));
    if (!connection_) return;
    dbus_connection_get_unix_fd(connection_.get(), &descriptor_);
    const int owner = DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER;
    isServing_ = dbus_bus_register(connection_.get(), nullptr) != FALSE &&
                 dbus_bus_request_name(connection_.get(), "org.freedesktop.Notifications", 0,
                                       nullptr) == owner;
    thread_ = std::thread([this] { serve(); });
  }
  ~DesktopService() {
    if (!connection_) return;
    shutdown(descriptor_, SHUT_RDWR);
    thread_.join();
    dbus_connection_close(connection_.get());
  }
  DesktopService(const DesktopService&) = delete;
  DesktopService& operator=(const DesktopService&) = delete;

  bool isServing() const { return isServing_; }
  void setManner(Manner manner) { manner_ = manner; }

  bool waitForCalls(std::size_t count) { return arrivals_.waitForSize(count); }
  std::vector<NotifyCall> calls() {
    base::MutexLock lock(mutex_);
    return calls_;
  }
  /// "<summary>: <body>" of each call.
  Lines texts() {
    Lines texts;
    for (const auto& call : calls()) texts.push_back(call.summary + ": " + call.body);
    return texts;
  }

 private:
  void serve() {
    while (dbus_connection_read_write(connection_.get(), -1) != FALSE) {
      while (const DBusMessagePtr message{dbus_connection_pop_message(connection_.get())}) {
        if (dbus_message_is_method_call(message.get(), "org.freedesktop.Notifications", "Notify") !=
                FALSE &&
            dbus_message_has_path(message.get(), "/org/freedesktop/Notifications") != FALSE) {
          receive(*message);
        }
      }
    }
  }
  void receive(DBusMessage& message) {
    {
      base::MutexLock lock(mutex_);
      calls_.push_back(readNotify(message));
    }
    arrivals_.add("Notify");
    if (manner_ == Manner::kHangs) return;
    const DBusMessagePtr reply(
        manner_ == Manner::kRefuses
            ? dbus_message_new_error(&message, "org.freedesktop.Notifications.Error.Full", "full")
            : dbus_message_new_method_return(&message));
    if (manner_ == Manner::kAnswers) {
      const auto number = ++lastNotice_;
      dbus_message_append_args(reply.get(), DBUS_TYPE_UINT32, &number, DBUS_TYPE_INVALID);
    }
    dbus_connection_send(connection_.get(), reply.get(), nullptr);
    dbus_connection_flush(connection_.get());
  }

  std::atomic<Manner> manner_;
  DBusConnectionPtr connection_;
  int descriptor_ = -1;
  bool isServing_ = false;
  dbus_uint32_t lastNotice_ = 0;
  base::Mutex mutex_;
  std::vector<NotifyCall> calls_ PALLIMO_GUARDED_BY(mutex_);
  EventLog arrivals_;
  std::thread thread_;
};

}  // namespace pallimo::adapters::linux::desktop_test
