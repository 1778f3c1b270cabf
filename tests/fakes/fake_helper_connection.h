// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/mutex.h"
#include "fakes/journal.h"
#include "helper_link/protocol/xpc_protocol.h"
#include "ports/helper_connection.h"

namespace pallimo::fakes {

/// A connection whose other end is the test. It notes every call in the journal, messages as
/// "-> message". Handlers, replies and results run at once on the thread that asks for them,
/// looked up at that moment as a real connection does. Any thread.
class FakeHelperConnection final : public ports::HelperConnection,
                                   public std::enable_shared_from_this<FakeHelperConnection> {
 public:
  struct Behaviour {
    bool hasProxy = true;
    bool failsAtOnce = false;  ///< nobody serves the name: invalid as soon as it is resumed
  };

  FakeHelperConnection(std::shared_ptr<Journal> journal, Behaviour behaviour)
      : journal_(std::move(journal)), behaviour_(behaviour) {}

  void setExportedObject(
      std::shared_ptr<helper_link::protocol::ClientProtocol> exportedObject) override {
    journal_->add("setExportedObject");
    base::MutexLock lock(mutex_);
    std::swap(exported_, exportedObject);
  }
  void setInvalidationHandler(std::function<void()> handler) override {
    journal_->add(handler ? "setInvalidationHandler" : "clearInvalidationHandler");
    base::MutexLock lock(mutex_);
    std::swap(invalidationHandler_, handler);
  }
  void setInterruptionHandler(std::function<void()> handler) override {
    journal_->add(handler ? "setInterruptionHandler" : "clearInterruptionHandler");
    base::MutexLock lock(mutex_);
    std::swap(interruptionHandler_, handler);
  }
  void resume() override {
    journal_->add("resume");
    isResumed_ = true;
    if (behaviour_.failsAtOnce) fireInvalidation();
  }
  /// As a real one: calls the invalidation handler if it is still set, then lets go of everything.
  void invalidate() override {
    journal_->add("invalidate");
    isInvalidated_ = true;
    fireInvalidation();
    letGo();
  }
  std::shared_ptr<helper_link::protocol::XPCProtocol> remoteObjectProxy() override {
    if (!behaviour_.hasProxy) return nullptr;
    return std::make_shared<Proxy>(weak_from_this());
  }

  bool isResumed() const { return isResumed_; }
  bool isInvalidated() const { return isInvalidated_; }
  bool hasHandlers() const {
    base::MutexLock lock(mutex_);
    return invalidationHandler_ || interruptionHandler_;
  }
  helper_link::protocol::ClientProtocol* exportedObject() const {
    base::MutexLock lock(mutex_);
    return exported_.get();
  }

  /// The handlers as they stand, for a test in which one is already running when it is cleared.
  std::function<void()> interruptionHandler() const {
    base::MutexLock lock(mutex_);
    return interruptionHandler_;
  }
  std::function<void()> invalidationHandler() const {
    base::MutexLock lock(mutex_);
    return invalidationHandler_;
  }

  /// The helper dies.
  void interrupt() {
    if (auto handler = interruptionHandler()) handler();
  }
  /// Nobody serves the name.
  void fireInvalidation() {
    if (auto handler = invalidationHandler()) handler();
  }

  /// Each answers the oldest open question; false when there is none.
  bool replyIsResponding(bool answer) { return reply(livenessReplies_, answer); }
  bool replyVersion(const std::string& version) { return reply(versionReplies_, version); }

  /// The oldest open question's reply, for a test in which it is already running when the
  /// connection is dropped; empty when there is none.
  std::function<void(bool)> takeIsRespondingReply() {
    std::function<void(bool)> taken;
    take(livenessReplies_, taken);
    return taken;
  }

  /// The helper sends one result; false when nobody takes it any more.
  bool sendResult(std::optional<base::Bytes> document) {
    std::shared_ptr<helper_link::protocol::ClientProtocol> target;
    {
      base::MutexLock lock(mutex_);
      target = exported_;
    }
    if (target) target->powermetricsResult(std::move(document));
    return target != nullptr;
  }

  /// Forgets handlers, questions and exported object, which hold the client.
  void letGo() {
    std::shared_ptr<helper_link::protocol::ClientProtocol> exported;
    std::function<void()> invalidation;
    std::function<void()> interruption;
    std::vector<std::function<void(bool)>> liveness;
    std::vector<std::function<void(std::string)>> versions;
    base::MutexLock lock(mutex_);
    std::swap(exported, exported_);
    std::swap(invalidation, invalidationHandler_);
    std::swap(interruption, interruptionHandler_);
    std::swap(liveness, livenessReplies_);
    std::swap(versions, versionReplies_);
  }

 private:
  class Proxy final : public helper_link::protocol::XPCProtocol {
   public:
    explicit Proxy(std::weak_ptr<FakeHelperConnection> connection)
        : connection_(std::move(connection)) {}

    void isResponding(std::function<void(bool)> completion) override {
      if (auto target = connection_.lock()) {
        target->ask("isResponding", target->livenessReplies_, std::move(completion));
      }
    }
    void unInstallHelper() override { send("unInstallHelper"); }
    void getVersion(std::function<void(std::string)> completion) override {
      if (auto target = connection_.lock()) {
        target->ask("getVersion", target->versionReplies_, std::move(completion));
      }
    }
    void requestPowermetrics(double msSampling, bool includeGPU) override {
      send("requestPowermetrics " + std::to_string(msSampling) + (includeGPU ? " GPU" : ""));
    }
    void closeHelper() override { send("closeHelper"); }

   private:
    void send(const std::string& message) {
      if (auto target = connection_.lock()) target->journal_->add("-> " + message);
    }

    std::weak_ptr<FakeHelperConnection> connection_;
  };

  template <typename Reply>
  void ask(const std::string& question, std::vector<Reply>& replies, Reply completion) {
    journal_->add("-> " + question);
    base::MutexLock lock(mutex_);
    if (!isInvalidated_) replies.push_back(std::move(completion));
  }

  template <typename Reply>
  bool take(std::vector<Reply>& replies, Reply& taken) {
    base::MutexLock lock(mutex_);
    if (replies.empty()) return false;
    taken = std::move(replies.front());
    replies.erase(replies.begin());
    return true;
  }

  template <typename Reply, typename Answer>
  bool reply(std::vector<Reply>& replies, const Answer& answer) {
    Reply completion;
    if (!take(replies, completion)) return false;
    completion(answer);
    return true;
  }

  const std::shared_ptr<Journal> journal_;
  const Behaviour behaviour_;
  std::atomic<bool> isResumed_ = false;
  std::atomic<bool> isInvalidated_ = false;

  mutable base::Mutex mutex_;
  std::shared_ptr<helper_link::protocol::ClientProtocol> exported_ PALLIMO_GUARDED_BY(mutex_);
  std::function<void()> invalidationHandler_ PALLIMO_GUARDED_BY(mutex_);
  std::function<void()> interruptionHandler_ PALLIMO_GUARDED_BY(mutex_);
  // Touched under mutex_ alone, by ask(), take() and letGo(); the first two get them by reference.
  std::vector<std::function<void(bool)>> livenessReplies_;
  std::vector<std::function<void(std::string)>> versionReplies_;
};

}  // namespace pallimo::fakes
