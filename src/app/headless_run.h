// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "app/command_line.h"
#include "app/content_view.h"
#include "app/general_model.h"
#include "app/headless_format.h"
#include "app/main_content.h"
#include "app/sample_output.h"
#include "base/notification_centre.h"
#include "base/subscription.h"
#include "ports/main_queue.h"

namespace pallimo::app {

/// How a run ended.
struct RunEnd {
  int status = 0;       ///< the program's exit status
  std::string message;  ///< one line for standard error, without the program's name; empty for 0
  bool operator==(const RunEnd&) const = default;
};

/// The lines of a run that ended before its time, as `RunEnd::message` holds them.
namespace run_message {
inline constexpr std::string_view kOutputFailed = "can't write to standard output: ";
inline constexpr std::string_view kWrongProcessor =
    "this app is only for Apple silicon; it does not work on this processor";
inline constexpr std::string_view kNotUsable =
    "the helper is absent or does not answer; run with --install-helper to install it";
inline constexpr std::string_view kStillNotUsable =
    "the helper does not answer, 5 seconds after its installation; the system log may say why";
inline constexpr std::string_view kOutOfDate =
    "the helper is out of date; run with --install-helper to update it";
inline constexpr std::string_view kRefused =
    "the installation of the helper was refused; start again and allow it";
inline constexpr std::string_view kLost =
    "the helper was lost while sampling; start again, or run with --install-helper to go on";
}  // namespace run_message

/// A run without a window: prints every distributed sample, presses the shown button where it is
/// told to, and decides when the run ends and with which status.
///
/// Main thread; rows and notices that come on other threads are queued to it. Everything that it
/// was built from outlives it.
class HeadlessRun final : public std::enable_shared_from_this<HeadlessRun> {
 public:
  struct Services {
    ports::MainQueue& mainQueue;
    base::NotificationCentre& notifications;
    GeneralModel& general;
    SampleOutput& output;
  };

  struct Settings {
    OutputFormat format = OutputFormat::table;
    std::optional<std::uint64_t> samples;
    bool installHelper = false;
    /// How much faster than real time the main queue's delays pass.
    double speed = 1;
  };

  /// How long a helper may take to become usable; measured from the start, and with the button
  /// from the first installation that has not been answered. An update installs the manager's
  /// delay after the press, not with it, so its wait begins that much later. Real time: a real
  /// process does not start faster in a faster run.
  static constexpr std::chrono::seconds kWaitingLimit{5};
  /// How often the button is pressed at most; the first time this long after the start, and after
  /// an update this long after its installation: until then the removal is still under way, and the
  /// install screen that is shown meanwhile is left alone. Real time.
  static constexpr std::chrono::seconds kPressInterval{1};

  /// `onEnd` is called once, from the main queue and never from within start().
  static std::shared_ptr<HeadlessRun> create(const Services& services, const Settings& settings,
                                             std::function<void(RunEnd)> onEnd);

  /// Creates the content model, which starts everything. Once.
  void start();
  /// The user wants the run to end. Rows that were taken before are still printed.
  void interrupt();

 private:
  HeadlessRun(const Services& services, const Settings& settings,
              std::function<void(RunEnd)> onEnd);

  std::chrono::milliseconds nominal(std::chrono::seconds real) const;
  void later(std::chrono::milliseconds delay, std::function<void(HeadlessRun&)> task);
  void receiveRows();
  void noticeRefusals();
  void watchContent();
  void startPressing();
  void print(const logging::LogRow& row);
  void contentChanged();
  void pressIfShown();
  void pauseForUpdate();
  void waitForAnswer(std::chrono::milliseconds untilInstallation);
  void endUnlessLive(std::string_view message);
  void end(int status, std::string_view message = {});

  const Services services_;
  const Settings settings_;
  const std::thread::id mainThread_;

  std::function<void(RunEnd)> onEnd_;
  std::unique_ptr<HeadlessFormat> format_;
  std::unique_ptr<ContentView> contentView_;
  base::Subscription contentChange_;
  base::Subscription installError_;
  std::unique_ptr<ports::RepeatingTimer> pressTimer_;
  std::uint64_t printed_ = 0;
  std::uint64_t waits_ = 0;  ///< numbers the waits for an answer to a press
  bool isWaitingForAnswer_ = false;
  bool isLive_ = false;  ///< the helper was usable when last looked at
  bool hasEnded_ = false;
};

}  // namespace pallimo::app
