// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/headless/headless_run.h"
#include "app/models/general_model.h"
#include "fakes/fake_platform.h"
#include "fakes/recording_output.h"
#include "scenarios/sample_document.h"
#include "unit/base/zone_scope.h"

namespace pallimo::scenarios {

using namespace std::chrono_literals;

inline const std::string kRefusal =
    "5: the helper could not be installed, or its installation was refused; the system log may say "
    "why";
inline const std::string kStillNotUsable =
    "3: the helper does not answer, 5 seconds after its installation; the system log may say why";
inline const std::string kSilent =
    "3: the helper fell silent while sampling; start again with --install-helper to replace it";

inline const std::string kNoSamples =
    "7: the helper answers, but its powermetrics gives no samples; the system log may say why, and "
    "the window's menu can uninstall the helper";

/// The whole program without Qt and without a helper: the test is the helper, the user and the
/// clock. Times are those of a queue that runs at the speed of the settings.
class WholeProgram : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  WholeProgram() {
    platform_.clock.set(std::chrono::system_clock::time_point(1772715753123ms));
    platform_.backgroundQueue.runAtOnce();
    settings_.format = app::OutputFormat::csv;
  }
  ~WholeProgram() override { queue().run(); }

  fakes::ManualMainQueue& queue() { return platform_.mainQueue; }
  app::GeneralModel& general() { return *general_; }
  fakes::FakeHelperConnection& helper() { return *platform_.helperConnector.latest(); }

  /// The program starts; the helper has not answered yet.
  void start() {
    general_.emplace(platform_.platform());
    run_ = app::HeadlessRun::create({queue(), platform_.notifications, *general_, output_},
                                    settings_, [this](app::RunEnd end) { ends_.push_back(end); });
    run_->start();
    queue().run();
  }

  void helperAnswers(const std::string& version = "1.0") {
    helper().replyIsResponding(true);
    helper().replyVersion(version);
    queue().run();
  }

  void startWithUsableHelper() {
    start();
    helperAnswers();
  }

  void helperSends(const SampleDocument& sample = {}) {
    helper().sendResult(bytesOf(sample));
    queue().run();
  }

  /// A sample a second, the first one at once.
  void sampleFor(int seconds) {
    for (int sample = 0; sample < seconds; ++sample) {
      helperSends();
      queue().advance(1s);
    }
  }

  /// The administrator takes that long to type, and nothing else happens on the main thread.
  void installationsTake(std::chrono::seconds time) {
    platform_.helperInstaller.onCall = [this, time](const std::string&) { queue().keepBusy(time); };
  }

  /// As always the link tells on a thread of its own.
  void helperDies() {
    std::thread([this] { helper().interrupt(); }).join();
    queue().run();
  }

  /// A freshly installed helper answers the probe.
  void probeIsAnswered(bool answer = true) {
    helper().replyIsResponding(answer);
    queue().run();
  }

  /// The messages that reached the helper since the last call, without the calls around them.
  Lines messagesSent() {
    Lines messages;
    for (const std::string& entry : platform_.helperConnector.journal().take()) {
      if (entry.rfind("-> ", 0) == 0) messages.push_back(entry.substr(3));
    }
    return messages;
  }

  /// How often the helper was asked whether it responds since the messages were last looked at.
  std::size_t questionsSent() {
    const Lines messages = messagesSent();
    return static_cast<std::size_t>(std::count(messages.begin(), messages.end(), "isResponding"));
  }

  /// How often an installation was begun.
  std::size_t installations() const {
    const Lines lines = platform_.console.lines();
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), "INSTALL HELPER"));
  }

  /// The status and line of a run that has ended, "running" otherwise.
  std::string ending() const {
    if (ends_.empty()) return "running";
    if (ends_.size() > 1) return "ended more than once";
    const app::RunEnd& end = ends_.front();
    return std::to_string(end.status) + (end.message.empty() ? "" : ": " + end.message);
  }

  const tests::ZoneScope zone_{"UTC"};
  fakes::FakePlatform platform_;
  fakes::RecordingOutput output_;
  app::HeadlessRun::Settings settings_;
  std::optional<app::GeneralModel> general_;
  std::shared_ptr<app::HeadlessRun> run_;
  std::vector<app::RunEnd> ends_;
};

}  // namespace pallimo::scenarios
