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

#include "app/headless/headless_format.h"
#include "app/models/content_view.h"
#include "app/models/general_model.h"
#include "app/start/command_line.h"
#include "app/start/run_end.h"
#include "base/notification_centre.h"
#include "base/subscription.h"
#include "ports/main_queue.h"
#include "ports/standard_output.h"

namespace pallimo::app {

/// A run without a window: prints every distributed sample, presses the shown button where it is
/// told to, and decides when the run ends and with which status.
///
/// It looks at the main content once a second and acts on what it finds:
/// - A helper that is not usable is waited for, without the button from the start and with it from
///   the installation on. Five looks that find none are too many: kNotUsable or kStillNotUsable.
/// - The shown button is pressed, with the option, unless the answer to an installation is still
///   awaited: an unanswered one is left alone, so that nobody is asked for a password again and
///   again. Where the answer was lost with its connection (the new helper died, or an old one ended
///   late and took the question with it) the next look presses again, within the same five looks.
/// - A usable helper that sends no sample for two seconds is asked whether it responds, every
///   second. Samples and answers are signs of life: a long sampling period is no silence. Without
///   any sign for five seconds the run ends between the fifth and the sixth (kSilent), with or
///   without the button, for no screen shows one meanwhile. A helper that hangs for less loses
///   nothing. The window, in contrast, waits for ever.
/// - A usable helper that answers and gives no sample ends the run, too (kNoSamples), with or
///   without the button: a helper of the right version shows none. Five looks that found results
///   without a document, and no sample between them, are too many, as when its powermetrics is
///   gone; so is a longer wait for any result than the helper itself lets a run take, and five
///   seconds more.
///
/// The time in which the main thread is busy, as while the administrator types, counts for nothing:
/// each look is timed from the end of the one before.
///
/// An interruption by the user while an update is under way ends the run only when the new helper
/// is installed, at most the manager's delay later, and is status 0 whatever became of that: ended
/// in between, it would leave no helper. A second interruption does not wait.
///
/// Main thread; rows and notices that come on other threads are queued to it. Everything that it
/// was built from outlives it.
class HeadlessRun final : public std::enable_shared_from_this<HeadlessRun> {
 public:
  struct Services {
    ports::MainQueue& mainQueue;
    base::NotificationCentre& notifications;
    GeneralModel& general;
    ports::StandardOutput& output;
  };

  struct Settings {
    OutputFormat format = OutputFormat::table;
    std::optional<std::uint64_t> samples;
    bool installHelper = false;
    /// How much faster than real time the main queue's delays pass.
    double speed = 1;
  };

  /// The time between two looks; the first comes this long after the start. After the press of an
  /// update the next one comes this long after its installation: until then the removal is under
  /// way, and the install screen that is shown meanwhile is left alone. Real time: a real process
  /// does not start or answer faster in a faster run.
  static constexpr std::chrono::seconds kLookInterval{1};
  /// How many looks in a row may find no sign of a usable helper.
  static constexpr int kWaitingLimit = 5;

  /// `onEnd` is called once, from the main queue and never from within start().
  static std::shared_ptr<HeadlessRun> create(const Services& services, const Settings& settings,
                                             std::function<void(RunEnd)> onEnd);

  /// Creates the content model, which starts everything. Once.
  void start();
  /// The user wants the run to end. Rows that were taken before are still printed. Any thread.
  void interrupt();

 private:
  HeadlessRun(const Services& services, const Settings& settings,
              std::function<void(RunEnd)> onEnd);

  std::chrono::milliseconds nominal(std::chrono::seconds real) const;
  void later(std::chrono::milliseconds delay, std::function<void(HeadlessRun&)> task);
  void receiveRows();
  void noticeLostAnswers();
  void watchContent();
  void print(const HeadlessSample& sample);
  void contentChanged();
  void lookLater();
  void look();
  void act();
  void watchForSilence();
  void askForSignOfLife();
  void watchForSamples();
  void beginWatch();
  void waitForHelper();
  void press();
  void installationRan();
  void updateRan();
  void userInterrupts();
  void end(int status, std::string_view message = {});

  const Services services_;
  const Settings settings_;

  std::function<void(RunEnd)> onEnd_;
  std::unique_ptr<HeadlessFormat> format_;
  std::unique_ptr<ContentView> contentView_;
  base::Subscription contentChange_;
  base::Subscription lostAnswers_;
  std::uint64_t printed_ = 0;
  int silentLooks_ = 0;             ///< since the wait began, or the last sign of life
  int emptyLooks_ = 0;              ///< since the last sample: those that found results without one
  int looksForSample_ = 0;          ///< since the last sample, or the helper became usable
  double longestPeriod_ = 0;        ///< ms, of those that were asked for meanwhile
  std::uint64_t emptyResults_ = 0;  ///< that the last look found
  bool isLive_ = false;             ///< the helper was usable when last looked at
  bool isWaiting_ = false;          ///< for a helper to become usable
  bool isAnswerLost_ = false;       ///< what is waited for can't come any more
  bool isUpdating_ = false;         ///< the update's installation is yet to run
  bool isInterrupted_ = false;      ///< by the user, during the update
  bool hasEnded_ = false;
};

}  // namespace pallimo::app
