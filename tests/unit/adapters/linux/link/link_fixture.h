// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "adapters/common/poll_loop.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/link/dbus_helper_connection.h"
#include "adapters/linux/link/dbus_helper_listener.h"
#include "base/mutex.h"
#include "base/serial_thread.h"

namespace pallimo::adapters::linux::link_test {

using namespace std::chrono_literals;

/// Far beyond what any wait takes, also under a sanitizer on a busy machine.
inline constexpr auto kDeadline = 60s;

/// A new folder with a short path, closed to others; gone with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    char name[] = "/tmp/pallimoXXXXXX";
    path_ = mkdtemp(name);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  StateFolder state() const { return StateFolder(path_); }

 private:
  std::string path_;
};

/// Lines that threads write and a test waits for.
class EventLog {
 public:
  void add(std::string event) {
    base::MutexLock lock(mutex_);
    events_.push_back(std::move(event));
    changed_.notify_all();
  }
  std::vector<std::string> all() {
    base::MutexLock lock(mutex_);
    return events_;
  }
  std::size_t count(std::string_view event) {
    base::MutexLock lock(mutex_);
    return countLocked(event);
  }
  /// False when the deadline passed before `event` had come `times` times.
  bool waitFor(std::string_view event, std::size_t times = 1) {
    return waitUntil([&]() PALLIMO_REQUIRES(mutex_) { return countLocked(event) >= times; });
  }
  bool waitForSize(std::size_t size) {
    return waitUntil([&]() PALLIMO_REQUIRES(mutex_) { return events_.size() >= size; });
  }

 private:
  template <class Condition>
  bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    base::MutexLock lock(mutex_);
    while (!condition()) {
      if (changed_.wait_until(lock, deadline) == std::cv_status::timeout) return condition();
    }
    return true;
  }
  std::size_t countLocked(std::string_view event) PALLIMO_REQUIRES(mutex_) {
    std::size_t found = 0;
    for (const auto& each : events_) found += each == event ? 1 : 0;
    return found;
  }

  base::Mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<std::string> events_ PALLIMO_GUARDED_BY(mutex_);
};

/// Bytes that differ from place to place, so that a mix-up shows.
inline base::Bytes patternOf(std::size_t size) {
  base::Bytes bytes(size);
  for (std::size_t index = 0; index < size; ++index) {
    bytes[index] = static_cast<std::uint8_t>(index * 131 + index / 251);
  }
  return bytes;
}

inline std::string describe(const std::optional<base::Bytes>& document) {
  if (!document) return "absent";
  const bool isIntact = *document == patternOf(document->size());
  return (isIntact ? "document " : "damaged ") + std::to_string(document->size());
}

/// Answers a client: the document of a request has as many bytes as the request has milliseconds;
/// a negative one gives an absent document. With the GPU flag the client is sent away after it.
class EchoService final : public helper_link::protocol::XPCProtocol {
 public:
  EchoService(std::weak_ptr<ports::HelperPeer> peer, std::shared_ptr<EventLog> log)
      : peer_(std::move(peer)), log_(std::move(log)) {}

  void isResponding(std::function<void(bool)> completion) override { completion(true); }
  void unInstallHelper() override { log_->add("unInstallHelper"); }
  void getVersion(std::function<void(std::string)> completion) override { completion("1.2.3"); }
  void requestPowermetrics(double msSampling, bool includeGPU) override {
    log_->add("request");
    const auto peer = peer_.lock();
    if (!peer) return;
    std::optional<base::Bytes> document;
    if (msSampling >= 0) document = patternOf(static_cast<std::size_t>(msSampling));
    peer->powermetricsResult(std::move(document));
    if (includeGPU) peer->close();
  }
  void closeHelper() override { log_->add("closeHelper"); }

 private:
  const std::weak_ptr<ports::HelperPeer> peer_;
  const std::shared_ptr<EventLog> log_;
};

class EchoDelegate final : public ports::HelperListener::Delegate {
 public:
  explicit EchoDelegate(std::shared_ptr<EventLog> log) : log_(std::move(log)) {}

  std::shared_ptr<helper_link::protocol::XPCProtocol> accept(
      std::shared_ptr<ports::HelperPeer> peer) override {
    log_->add("accept");
    peers_.insert(peer);
    return std::make_shared<EchoService>(peer, log_);
  }
  void disconnected(const std::shared_ptr<ports::HelperPeer>& peer) override {
    log_->add(peers_.erase(peer) == 1 ? "disconnected" : "stranger disconnected");
    if (peers_.empty() && whenEmpty) whenEmpty();
  }
  bool hasPeers() const { return !peers_.empty(); }

  std::function<void()> whenEmpty;

 private:
  const std::shared_ptr<EventLog> log_;
  std::set<std::shared_ptr<ports::HelperPeer>> peers_;
};

/// A PollLoop on a thread of its own.
class LoopThread {
 public:
  LoopThread() : thread_([this] { loop_.run(); }) {}
  ~LoopThread() {
    loop_.stop();
    thread_.join();
  }
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;

  common::PollLoop& loop() { return loop_; }
  /// Runs `task` on the loop and waits for it.
  template <class Task>
  auto call(Task task) {
    std::packaged_task<decltype(task())()> packaged(std::move(task));
    auto result = packaged.get_future();
    loop_.async([&packaged] { packaged(); });
    return result.get();
  }

 private:
  common::PollLoop loop_;
  std::thread thread_;
};

/// A listening helper inside the test's process, on a thread of its own.
class TestHelper {
 public:
  explicit TestHelper(StateFolder folder, DBusListenerLimits limits = {})
      : log(std::make_shared<EventLog>()) {
    thread_.call([&] {
      delegate_ = std::make_unique<EchoDelegate>(log);
      listener_ = std::make_unique<DBusHelperListener>(thread_.loop(), std::move(folder), limits);
      hasStarted_ = listener_->start(*delegate_);
    });
  }
  ~TestHelper() {
    thread_.call([&] { listener_.reset(); });
  }

  bool hasStarted() const { return hasStarted_; }
  void stop() {
    thread_.call([&] { listener_->stop(); });
  }
  bool startAgain() {
    return thread_.call([&] { return listener_->start(*delegate_); });
  }

  /// Runs `task` while the helper neither reads nor writes.
  template <class Task>
  void whileItLooksElsewhere(Task task) {
    thread_.call(std::move(task));
  }

  const std::shared_ptr<EventLog> log;

 private:
  LoopThread thread_;
  std::unique_ptr<EchoDelegate> delegate_;
  std::unique_ptr<DBusHelperListener> listener_;
  bool hasStarted_ = false;
};

inline HelperStart notInstalled() { return HelperStart::kNotInstalled; }

/// Writes what its connection delivers into a log.
class LoggingClient final : public helper_link::protocol::ClientProtocol {
 public:
  explicit LoggingClient(std::shared_ptr<EventLog> log) : log_(std::move(log)) {}
  void powermetricsResult(std::optional<base::Bytes> document) override {
    log_->add(describe(document));
  }

 private:
  const std::shared_ptr<EventLog> log_;
};

/// The app's side: a connector with its delivery thread, and one connection.
class TestApp {
 public:
  explicit TestApp(const StateFolder& folder, std::function<HelperStart()> launch = notInstalled,
                   DBusLinkLimits limits = {})
      : log(std::make_shared<EventLog>()) {
    connector = std::make_unique<DBusHelperConnector>(delivery, folder, std::move(launch), limits);
  }

  /// A new connection, suspended, with its handlers set.
  std::shared_ptr<ports::HelperConnection> makeConnection(
      std::string_view name = helper_link::protocol::kMachServiceName) {
    auto made = connector->connect(name, helper_link::protocol::kConnectionPrivileged);
    made->setExportedObject(std::make_shared<LoggingClient>(log));
    made->setInvalidationHandler([events = log] { events->add("invalidated"); });
    made->setInterruptionHandler([events = log] { events->add("interrupted"); });
    return made;
  }
  /// Replaces the connection by a new one and starts it.
  void connect() {
    connection = makeConnection();
    connection->resume();
  }
  std::shared_ptr<helper_link::protocol::XPCProtocol> proxy() {
    return connection->remoteObjectProxy();
  }
  void askVersion() {
    proxy()->getVersion([events = log](const std::string& version) { events->add(version); });
  }
  void askIsResponding() {
    proxy()->isResponding([events = log](bool value) { events->add(value ? "yes" : "no"); });
  }
  /// Ends the connector, which waits until everything is written, and then the delivery of what
  /// had come before.
  void endConnector() {
    connection.reset();
    connector.reset();
  }

  const std::shared_ptr<EventLog> log;
  base::SerialThread delivery;
  std::unique_ptr<DBusHelperConnector> connector;
  std::shared_ptr<ports::HelperConnection> connection;
};

}  // namespace pallimo::adapters::linux::link_test
