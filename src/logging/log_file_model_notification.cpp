// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_model_notification.h"

#include <optional>
#include <utility>

#include "base/uuid.h"

namespace pallimo::logging {

namespace {

constexpr std::uint32_t kOptionSound = 2;
constexpr std::uint32_t kOptionAlert = 4;
constexpr std::uint32_t kPresentSound = 2;
constexpr std::uint32_t kPresentBanner = 16;

// Above 0, as a trigger's delay must be, and too short to notice.
constexpr double kDelay = 0.05;

}  // namespace

std::shared_ptr<LogFileModelNotification> LogFileModelNotification::create(
    const Services& services) {
  std::shared_ptr<LogFileModelNotification> notification(new LogFileModelNotification(services));
  services.notifications.setDelegate(notification);
  notification->askForAuthorization();
  return notification;
}

void LogFileModelNotification::askForAuthorization() {
  services_.notifications.requestAuthorization(
      kOptionAlert | kOptionSound,
      [&console = services_.console](bool, const std::optional<std::string>& error) {
        if (error) console.writeLine("Error: " + *error);
      });
}

std::uint32_t LogFileModelNotification::willPresentNotification(const ports::UserNotification&) {
  return kPresentBanner | kPresentSound;
}

void LogFileModelNotification::notifyLoggingStarted() {
  post("Logging started", "The log file will be written when logging is stopped.");
}

void LogFileModelNotification::notifyLoggingEnded(std::string_view path) {
  post("Logging ended", "Saved at: " + std::string(path));
}

void LogFileModelNotification::post(std::string title, std::string subtitle) {
  ports::UserNotification notification;
  notification.identifier = freshIdentifier();
  notification.title = std::move(title);
  notification.subtitle = std::move(subtitle);
  notification.playsDefaultSound = true;
  notification.delay = kDelay;
  services_.notifications.add(std::move(notification));
}

std::string LogFileModelNotification::freshIdentifier() {
  const auto high = services_.random.next();
  const auto low = services_.random.next();
  return base::uuidText(high, low);
}

}  // namespace pallimo::logging
