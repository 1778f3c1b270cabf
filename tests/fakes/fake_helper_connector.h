// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "fakes/fake_helper_connection.h"
#include "fakes/journal.h"
#include "ports/helper_connection.h"

namespace pallimo::fakes {

/// Makes fake connections, notes each as "connect <name> <options>", and keeps them for the test.
class FakeHelperConnector final : public ports::HelperConnector {
 public:
  FakeHelperConnector() : journal_(std::make_shared<Journal>()) {}
  /// Open connections hold their client: let them go, so that a test leaks nothing.
  ~FakeHelperConnector() override {
    for (const auto& connection : all()) connection->letGo();
  }

  /// Whether connections can be made at all, and whether they then have a proxy.
  void setConnects(bool flag) { connects_ = flag; }
  void setHasProxies(bool flag) { hasProxies_ = flag; }
  /// Whether those who connect find that nobody serves the name.
  void setFailsAtOnce(bool flag) { failsAtOnce_ = flag; }
  /// Runs inside every connect(), on its thread, with no lock held. Set before use.
  void setOnConnect(std::function<void()> hook) { onConnect_ = std::move(hook); }

  std::shared_ptr<ports::HelperConnection> connect(std::string_view machServiceName,
                                                   unsigned options) override {
    journal_->add("connect " + std::string(machServiceName) + " " + std::to_string(options));
    if (onConnect_) onConnect_();
    if (!connects_) return nullptr;
    auto connection = std::make_shared<FakeHelperConnection>(
        journal_, FakeHelperConnection::Behaviour{hasProxies_, failsAtOnce_});
    base::MutexLock lock(mutex_);
    connections_.push_back(connection);
    return connection;
  }

  Journal& journal() { return *journal_; }
  std::vector<std::shared_ptr<FakeHelperConnection>> all() const {
    base::MutexLock lock(mutex_);
    return connections_;
  }
  std::size_t count() const { return all().size(); }
  /// The newest connection; there must be one.
  std::shared_ptr<FakeHelperConnection> latest() const {
    base::MutexLock lock(mutex_);
    return connections_.back();
  }

 private:
  const std::shared_ptr<Journal> journal_;
  std::atomic<bool> connects_ = true;
  std::atomic<bool> hasProxies_ = true;
  std::atomic<bool> failsAtOnce_ = false;
  std::function<void()> onConnect_;

  mutable base::Mutex mutex_;
  std::vector<std::shared_ptr<FakeHelperConnection>> connections_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
