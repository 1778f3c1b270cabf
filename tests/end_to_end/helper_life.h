// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "end_to_end/app_fixture.h"

namespace pallimo::end_to_end {

/// The life of the helper as a user sees it: the real app without a window, the real helper, and
/// everything that can go wrong between them.
class HelperLife : public AppTest {
 protected:
  /// A run's arguments: CSV, `count` samples, twenty times faster than real time.
  static Texts samples(std::size_t count) { return samplesAt("20", count); }
  /// The same at another speed. What has to happen between two moments of the run's time, as the
  /// end of a helper's process, needs a low one: a loaded machine is no faster in a faster run.
  static Texts samplesAt(const std::string& speed, std::size_t count) {
    return {"--format", "csv", "--samples", std::to_string(count), "--speed", speed};
  }
  /// As many samples as come.
  static Texts endlessAt(const std::string& speed) { return {"--format", "csv", "--speed", speed}; }
  static Texts pressing(Texts arguments) {
    arguments.insert(arguments.begin(), "--install-helper");
    return arguments;
  }

  /// The run's rows, all complete, and status 0.
  static void expectSamples(AppProcess& app, std::size_t count) {
    const Texts lines = app.readLines(count + 1);
    ASSERT_EQ(lines.size(), count + 1) << app.errorText();
    for (const std::string& line : lines) EXPECT_EQ(columnsOf(line).size(), 18u) << line;
    EXPECT_EQ(app.readAll(), "");
    EXPECT_EQ(app.exitStatus(), 0) << app.errorText();
  }

  /// No row, this status, and this line of our own at the end of standard error.
  static void expectEnd(AppProcess& app, int status, const std::string& message) {
    EXPECT_EQ(app.exitStatus(), status);
    EXPECT_EQ(app.readAll(), "");
    EXPECT_TRUE(app.errorText().ends_with("pallimo: " + message + "\n")) << app.errorText();
  }
  static void expectRefusal(AppProcess& app) {
    expectEnd(app, 5,
              "the helper could not be installed, or its installation was refused; the system log "
              "may say why");
  }
  static void expectNotUsable(AppProcess& app) {
    expectEnd(app, 3,
              "the helper is absent or does not answer; run with --install-helper to install it");
  }
  static void expectOutOfDate(AppProcess& app) {
    expectEnd(app, 4, "the helper is out of date; run with --install-helper to update it");
  }

  /// Looks every few milliseconds whether it holds, for as long as the app runs.
  static bool waitUntil(const AppProcess& app, const std::function<bool()>& holds) {
    const WatchedProcess process(app.number());
    const auto deadline = std::chrono::steady_clock::now() + kGenerous;
    while (!holds()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      if (process.isGoneInTime(std::chrono::milliseconds(2))) return holds();
    }
    return true;
  }
  static bool waitForPresses(const AppProcess& app, std::size_t count) {
    return waitUntil(app, [&] { return presses(app) >= count; });
  }
  /// The runs of powermetrics, once there are some.
  std::vector<WatchedProcess> runsUnderWay(const AppProcess& app) const {
    waitUntil(app, [this] { return !runsOf().empty(); });
    return runsOf();
  }

  static std::size_t presses(const AppProcess& app) {
    const std::string text = app.errorText();
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find("INSTALL HELPER\n", at)) != std::string::npos; ++at) {
      ++count;
    }
    return count;
  }
};

}  // namespace pallimo::end_to_end
