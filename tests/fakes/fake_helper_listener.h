// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ports/helper_listener.h"

namespace pallimo::fakes {

/// A client's end as the helper sees it: remembers what it was sent.
class FakeHelperPeer final : public ports::HelperPeer {
 public:
  void powermetricsResult(std::optional<base::Bytes> document) override {
    results.push_back(document ? std::string(document->begin(), document->end()) : kAbsent);
  }
  void close() override { isClosed = true; }

  static constexpr const char* kAbsent = "(absent)";
  std::vector<std::string> results;
  bool isClosed = false;
};

/// A client that is connected to the helper.
struct FakeHelperClient {
  std::shared_ptr<FakeHelperPeer> peer;
  std::shared_ptr<helper_link::protocol::XPCProtocol> helper;

  const std::vector<std::string>& results() const { return peer->results; }
};

/// A listener whose clients are the test's.
class FakeHelperListener final : public ports::HelperListener {
 public:
  bool start(Delegate& delegate) override {
    if (!canStart) return false;
    delegate_ = &delegate;
    isListening = true;
    return true;
  }
  void stop() override {
    ++stops;
    isListening = false;
    if (const auto action = std::exchange(whenStopped, nullptr)) action();
  }

  FakeHelperClient connect() {
    auto peer = std::make_shared<FakeHelperPeer>();
    return {peer, delegate_->accept(peer)};
  }
  void disconnect(const FakeHelperClient& client) { delegate_->disconnected(client.peer); }

  bool canStart = true;
  bool isListening = false;
  int stops = 0;
  /// Called within stop(): for clients that reached the helper before.
  std::function<void()> whenStopped;

 private:
  Delegate* delegate_ = nullptr;
};

}  // namespace pallimo::fakes
