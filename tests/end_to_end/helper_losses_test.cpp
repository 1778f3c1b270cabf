// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "end_to_end/helper_life.h"

// Helpers and apps that are killed or held up.

namespace pallimo::end_to_end {
namespace {

using namespace std::chrono_literals;

// A helper that is lost, or held up, while it samples.

using Losses = HelperLife;

TEST_F(Losses, KilledAtTenRandomMomentsItGoesOnAfterAPressEach) {
  constexpr std::size_t kKills = 10;
  std::mt19937 random(20'261'121);
  const auto app = startHeadless(pressing(endlessAt("20")));
  Texts lines = app->readLines(1);
  const auto read = [&](std::size_t count) {
    const Texts more = app->readLines(count);
    lines.insert(lines.end(), more.begin(), more.end());
    return more.size() == count;
  };
  for (std::size_t kills = 0; kills < kKills; ++kills) {
    // More than the rows that may still be under way from the life before.
    ASSERT_TRUE(waitForPresses(*app, kills + 1)) << app->errorText();
    ASSERT_TRUE(read(4 + random() % 5)) << app->errorText();
    const auto running = helpersOf();
    ASSERT_EQ(running.size(), 1u);
    // Any moment within a second of the run's time.
    running[0].isGoneInTime(std::chrono::milliseconds(random() % 50));
    running[0].send(SIGKILL);
    EXPECT_TRUE(running[0].isGoneInTime());
  }
  ASSERT_TRUE(read(20)) << app->errorText();
  EXPECT_EQ(presses(*app), kKills + 1);
  app->send(SIGTERM);
  for (auto line = app->readLine(); line; line = app->readLine()) lines.push_back(*line);
  for (const std::string& line : lines) EXPECT_EQ(columnsOf(line).size(), 18u) << line;
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
  expectNothingLeft();
}

TEST_F(Losses, StoppedForThreeSecondsNothingIsLost) {
  constexpr std::size_t kSamples = 40;
  std::vector<std::optional<SampleDocument>> steps;
  for (int step = 1; step <= 100; ++step) steps.emplace_back(drawing(step * 1000));
  installHelper();
  // What is requested meanwhile must stay below the helper's limit of runs at once.
  Texts arguments = samplesAt("10", kSamples);
  arguments.insert(arguments.end(), {"--machine", recording(steps)});
  const auto app = startHeadless(arguments);
  Texts lines = app->readLines(4);
  const auto running = helpersOf();
  ASSERT_EQ(running.size(), 1u);
  running[0].send(SIGSTOP);
  EXPECT_FALSE(running[0].isGoneInTime(3s));
  running[0].send(SIGCONT);
  for (const std::string& line : app->readLines(kSamples)) lines.push_back(line);
  ASSERT_EQ(lines.size(), kSamples + 1);
  // The n-th request is answered with the n-th step.
  for (std::size_t row = 1; row <= kSamples; ++row) {
    EXPECT_EQ(columnsOf(lines[row])[2], std::to_string(row) + ".000");
  }
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
  expectNothingLeft();
}

TEST_F(Losses, OneThatStaysStoppedIsStatus3) {
  installHelper();
  const auto app = startHeadless(endlessAt("5"));
  ASSERT_EQ(app->readLines(3).size(), 3u);
  const auto running = helpersOf();
  ASSERT_EQ(running.size(), 1u);
  running[0].send(SIGSTOP);
  EXPECT_EQ(app->exitStatus(), 3);
  EXPECT_EQ(app->errorText(),
            "pallimo: the helper fell silent while sampling; start again with --install-helper to "
            "replace it\n");
  running[0].send(SIGCONT);
  expectNothingLeft();
}

TEST_F(Losses, OneThatWasStoppedBeforeTheStartIsReplacedWithTheButton) {
  installHelper();
  const auto first = startHeadless(endlessAt("20"));
  ASSERT_EQ(first->readLines(2).size(), 2u);
  const auto stopped = helpersOf();
  ASSERT_EQ(stopped.size(), 1u);
  stopped[0].send(SIGSTOP);
  first->send(SIGKILL);
  EXPECT_EQ(first->exitStatus(), -SIGKILL);

  const auto app = startHeadless(pressing(samples(3)));
  EXPECT_FALSE(stopped[0].isGoneInTime(0ms));
  expectSamples(*app, 3);
  EXPECT_TRUE(stopped[0].isGoneInTime());
  expectNothingLeft();
}

TEST_F(Losses, AKilledAppLeavesAHelperThatEndsItsRunsAtOnceAndThenItself) {
  installHelper();
  std::ofstream(stateFolder() / "settings.ini") << "[General]\nsamplingResolution=3600000\n";
  const auto app = startHeadless({"--format", "csv"});
  const std::vector<WatchedProcess> runs = runsUnderWay(*app);
  ASSERT_FALSE(runs.empty());
  const auto helpers = helpersOf();
  ASSERT_EQ(helpers.size(), 1u);
  app->send(SIGKILL);
  EXPECT_EQ(app->exitStatus(), -SIGKILL);
  for (const WatchedProcess& run : runs) EXPECT_TRUE(run.isGoneInTime());
  EXPECT_FALSE(helpers[0].isGoneInTime(0ms));  // it waits five seconds for somebody else
  expectNothingLeft();
}

// An app that is killed while the helper changes: whatever it leaves, the next start mends it.

using KilledApps = HelperLife;

TEST_F(KilledApps, DuringAnInstallationTheNextStartSamples) {
  for (const std::chrono::milliseconds moment : {0ms, 4ms}) {
    const std::string state = "killed after " + std::to_string(moment.count());
    const auto app = startHeadless(pressing(endlessAt("20")), state);
    ASSERT_TRUE(waitForPresses(*app, 1)) << app->errorText();
    WatchedProcess(app->number()).isGoneInTime(moment);
    app->send(SIGKILL);
    EXPECT_EQ(app->exitStatus(), -SIGKILL);
    const auto next = startHeadless(pressing(samples(3)), state);
    expectSamples(*next, 3);
    EXPECT_EQ(textOf(helperPath(state)), textOf(embeddedHelper()));
    expectNothingLeft(state);
  }
}

TEST_F(KilledApps, HalfACopyIsClearedAwayByTheNextInstallation) {
  makeStateFolder();
  fs::create_directory(helperPath().parent_path());
  std::ofstream(helperPath().parent_path() / ".com.ostrovane.powermetrics.new") << "half a helper";
  const auto app = startHeadless(pressing(samples(1)));
  expectSamples(*app, 1);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  expectNothingLeft();
}

TEST_F(KilledApps, BetweenRemovalAndInstallationTheNextStartInstalls) {
  installOlderHelper();
  // A second of the run's time, half a real one, lies between the two.
  const auto app = startHeadless(pressing(endlessAt("2")));
  ASSERT_TRUE(waitUntil(*app, [this] { return !fs::exists(helperPath()); })) << app->errorText();
  app->send(SIGKILL);
  EXPECT_EQ(app->exitStatus(), -SIGKILL);
  for (const WatchedProcess& helper : helpersOf()) EXPECT_TRUE(helper.isGoneInTime());
  const auto next = startHeadless(pressing(samples(3)));
  expectSamples(*next, 3);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  expectNothingLeft();
}

}  // namespace
}  // namespace pallimo::end_to_end
