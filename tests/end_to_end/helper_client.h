// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "helper_link/protocol/xpc_protocol.h"
#include "ports/helper_connection.h"

namespace pallimo::end_to_end {

/// Long enough for any of it on a loaded machine; whatever takes longer has failed.
inline constexpr std::chrono::seconds kDeadline{60};

/// The app's end of one connection to the real helper, with what has come over it.
class Client {
 public:
  explicit Client(ports::HelperConnector& connector)
      : state_(std::make_shared<State>()),
        connection_(connector.connect(helper_link::protocol::kMachServiceName,
                                      helper_link::protocol::kConnectionPrivileged)) {
    connection_->setExportedObject(state_);
    connection_->setInterruptionHandler([state = state_] { state->lose("interrupted"); });
    connection_->setInvalidationHandler([state = state_] { state->lose("invalidated"); });
    connection_->resume();
  }
  ~Client() { drop(); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  void drop() {
    if (!connection_) return;
    connection_->setInterruptionHandler(nullptr);
    connection_->setInvalidationHandler(nullptr);
    connection_->invalidate();
    connection_.reset();
  }

  std::shared_ptr<helper_link::protocol::XPCProtocol> helper() const {
    return connection_->remoteObjectProxy();
  }
  void request(double msSampling, bool includeGPU = false) const {
    helper()->requestPowermetrics(msSampling, includeGPU);
  }

  /// Whether the helper answers on this connection.
  bool isAnswered() {
    const auto before = state_->answers();
    helper()->isResponding([state = state_](bool isResponding) {
      if (isResponding) state->answer("responding");
    });
    return state_->waitForAnswers(before + 1);
  }
  std::string version() {
    const auto before = state_->answers();
    helper()->getVersion([state = state_](const std::string& text) { state->answer(text); });
    return state_->waitForAnswers(before + 1) ? state_->lastAnswer() : "(no answer)";
  }
  /// The first `count` results, "(absent)" among them.
  std::vector<std::string> results(std::size_t count) { return state_->waitForResults(count); }
  std::string loss() { return state_->waitForLoss(); }

 private:
  class State final : public helper_link::protocol::ClientProtocol {
   public:
    void powermetricsResult(std::optional<base::Bytes> document) override {
      change([&] {
        results_.push_back(document ? std::string(document->begin(), document->end())
                                    : std::string("(absent)"));
      });
    }
    void answer(const std::string& text) {
      change([&] { answers_.push_back(text); });
    }
    void lose(const std::string& how) {
      change([&] { loss_ += how; });
    }

    std::size_t answers() {
      const std::lock_guard lock(mutex_);
      return answers_.size();
    }
    std::string lastAnswer() {
      const std::lock_guard lock(mutex_);
      return answers_.back();
    }
    bool waitForAnswers(std::size_t count) {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline,
                        [&] { return answers_.size() >= count || !loss_.empty(); });
      return answers_.size() >= count && loss_.empty();
    }
    std::vector<std::string> waitForResults(std::size_t count) {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline,
                        [&] { return results_.size() >= count || !loss_.empty(); });
      return results_;
    }
    std::string waitForLoss() {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kDeadline, [&] { return !loss_.empty(); });
      return loss_;
    }

   private:
    template <class Change>
    void change(Change apply) {
      const std::lock_guard lock(mutex_);
      apply();
      changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> results_;
    std::vector<std::string> answers_;
    std::string loss_;
  };

  const std::shared_ptr<State> state_;
  std::shared_ptr<ports::HelperConnection> connection_;
};

}  // namespace pallimo::end_to_end
