// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pallimo::ports {

/// What the system tells the user in a corner of the screen.
struct UserNotification {
  std::string identifier;  ///< one with the identifier of a shown one takes its place
  std::string title;
  std::string subtitle;
  bool playsDefaultSound = false;
  double delay = 0;  ///< s from adding to showing, above 0; shown once
  bool operator==(const UserNotification&) const = default;
};

/// Is asked how a notification is shown while the app is in front.
class UserNotificationsDelegate {
 public:
  virtual ~UserNotificationsDelegate() = default;

  /// The presentation options, as bits: 2 sound, 16 banner. Any thread.
  virtual std::uint32_t willPresentNotification(const UserNotification& notification) = 0;
};

/// The process's notification centre. Any thread.
class UserNotifications {
 public:
  /// Whether the user allows what was asked for; with an error's description when nobody could be
  /// asked.
  using AuthorizationAnswer = std::function<void(bool granted, std::optional<std::string> error)>;

  virtual ~UserNotifications() = default;

  virtual void setDelegate(std::weak_ptr<UserNotificationsDelegate> delegate) = 0;
  /// Asks for `options`, as bits: 2 sound, 4 alert. Answers later, on any thread, or never.
  virtual void requestAuthorization(std::uint32_t options, AuthorizationAnswer answer) = 0;
  /// Shows the notification when its delay is over. Nobody learns whether it was shown.
  virtual void add(UserNotification notification) = 0;
};

}  // namespace pallimo::ports
