// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "ports/console.h"
#include "ports/random_numbers.h"
#include "ports/user_notifications.h"

namespace pallimo::logging {

/// Tells the user that logging has begun, and where the log went when it has ended. Any thread.
///
/// Notices are handed over whether or not the user allows them, and whether or not the answer to
/// that question has come: the notification centre keeps back what the user does not want.
class LogFileModelNotification final : public ports::UserNotificationsDelegate {
 public:
  /// What it uses; all of it outlives the object and every answer of the notification centre.
  struct Services {
    ports::UserNotifications& notifications;
    ports::RandomNumbers& random;  ///< for the notices' identifiers
    ports::Console& console;
  };

  /// Becomes the notification centre's delegate, then asks for alerts and sounds. An error in the
  /// answer is written to the console, a mere refusal is not.
  static std::shared_ptr<LogFileModelNotification> create(const Services& services);

  /// 18, banner and sound, for every notice: it is shown also while the app is in front.
  std::uint32_t willPresentNotification(const ports::UserNotification& notification) override;

  /// Posts "Logging started".
  void notifyLoggingStarted();
  /// Posts "Logging ended" with the file's full path as it is, also when writing it has failed.
  void notifyLoggingEnded(std::string_view path);

 private:
  explicit LogFileModelNotification(const Services& services) : services_(services) {}

  void askForAuthorization();
  void post(std::string title, std::string subtitle);
  std::string freshIdentifier();

  const Services services_;
};

}  // namespace pallimo::logging
