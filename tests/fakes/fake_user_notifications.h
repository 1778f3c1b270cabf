// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/user_notifications.h"

namespace pallimo::fakes {

/// A notification centre that remembers what it is told and answers when the test says so. Any
/// thread.
class FakeUserNotifications final : public ports::UserNotifications {
 public:
  void setDelegate(std::weak_ptr<ports::UserNotificationsDelegate> delegate) override {
    base::MutexLock lock(mutex_);
    delegate_ = std::move(delegate);
    calls_.push_back("setDelegate");
  }
  void requestAuthorization(std::uint32_t options, AuthorizationAnswer answer) override {
    base::MutexLock lock(mutex_);
    answers_.push_back(std::move(answer));
    calls_.push_back("requestAuthorization " + std::to_string(options));
  }
  void add(ports::UserNotification notification) override {
    base::MutexLock lock(mutex_);
    calls_.push_back("add " + notification.title);
    added_.push_back(std::move(notification));
  }

  /// Answers every request for authorisation, on the caller's thread.
  void answer(bool granted, std::optional<std::string> error = std::nullopt) {
    for (const auto& each : takeAnswers()) each(granted, error);
  }

  std::shared_ptr<ports::UserNotificationsDelegate> delegate() const {
    base::MutexLock lock(mutex_);
    return delegate_.lock();
  }
  /// "setDelegate", "requestAuthorization <options>", "add <title>", in the order of the calls.
  std::vector<std::string> calls() const {
    base::MutexLock lock(mutex_);
    return calls_;
  }
  std::vector<ports::UserNotification> added() const {
    base::MutexLock lock(mutex_);
    return added_;
  }
  /// "<title>: <subtitle>" of what was added.
  std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const auto& each : added()) texts.push_back(each.title + ": " + each.subtitle);
    return texts;
  }
  /// Forgets calls and notices, but no request for authorisation.
  void forget() {
    base::MutexLock lock(mutex_);
    std::vector<std::string>().swap(calls_);
    std::vector<ports::UserNotification>().swap(added_);
  }

 private:
  std::vector<AuthorizationAnswer> takeAnswers() {
    base::MutexLock lock(mutex_);
    return std::exchange(answers_, {});
  }

  mutable base::Mutex mutex_;
  std::weak_ptr<ports::UserNotificationsDelegate> delegate_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<AuthorizationAnswer> answers_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<std::string> calls_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<ports::UserNotification> added_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
