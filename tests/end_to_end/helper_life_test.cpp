// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

#include "end_to_end/app_fixture.h"

// The life of the helper as a user sees it: the real app without a window, the real helper, and
// everything that can go wrong between them.

namespace pallimo::end_to_end {
namespace {

using namespace std::chrono_literals;

constexpr uid_t kNobody = 65'534;

class HelperLife : public AppTest {
 protected:
  /// A run's arguments: CSV, `count` samples, twenty times faster than real time.
  static Texts samples(std::size_t count) {
    return {"--format", "csv", "--samples", std::to_string(count), "--speed", "20"};
  }
  static Texts pressing(Texts arguments) {
    arguments.insert(arguments.begin(), "--install-helper");
    return arguments;
  }

  /// The run's rows, all complete, and status 0.
  static void expectSamples(AppProcess& app, std::size_t count) {
    const Texts lines = app.readLines(count + 1);
    EXPECT_EQ(lines.size(), count + 1);
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
    expectEnd(app, 5, "the installation of the helper was refused; start again and allow it");
  }
  static void expectNotUsable(AppProcess& app) {
    expectEnd(app, 3,
              "the helper is absent or does not answer; run with --install-helper to install it");
  }
  static void expectOutOfDate(AppProcess& app) {
    expectEnd(app, 4, "the helper is out of date; run with --install-helper to update it");
  }

  /// The runs of powermetrics, once there are some.
  std::vector<WatchedProcess> runsUnderWay() const {
    const auto deadline = std::chrono::steady_clock::now() + kGenerous;
    std::vector<WatchedProcess> runs = runsOf();
    while (runs.empty() && std::chrono::steady_clock::now() < deadline) runs = runsOf();
    return runs;
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

// The first start.

using FirstStart = HelperLife;

TEST_F(FirstStart, WithTheInstallButtonInstallsAndSamples) {
  const auto app = startHeadless(pressing(samples(3)));
  expectSamples(*app, 3);
  EXPECT_EQ(presses(*app), 1u);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  EXPECT_EQ(fs::status(helperPath()).permissions(), fs::perms(0755));
  expectNothingLeft();
}

TEST_F(FirstStart, WithoutTheButtonIsStatus3AndInstallsNothing) {
  const auto app = startHeadless(samples(3));
  expectNotUsable(*app);
  EXPECT_EQ(presses(*app), 0u);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(FirstStart, TwoAppsInFoldersOfTheirOwnInstallAHelperEach) {
  const auto one = startHeadless(pressing(samples(5)), "state");
  const auto other = startHeadless(pressing(samples(5)), "other");
  expectSamples(*one, 5);
  expectSamples(*other, 5);
  expectNothingLeft("state");
  expectNothingLeft("other");
}

// A helper that is there.

using Versions = HelperLife;

TEST_F(Versions, TheSameOneSamplesWithoutAPress) {
  installHelper();
  const auto app = startHeadless(pressing(samples(3)));
  expectSamples(*app, 3);
  EXPECT_EQ(app->errorText(), "");
  expectNothingLeft();
}

TEST_F(Versions, AnOlderOneIsStatus4WithoutTheButtonAndStays) {
  installOlderHelper();
  const std::string older = textOf(helperPath());
  const auto app = startHeadless(samples(3));
  expectOutOfDate(*app);
  EXPECT_EQ(presses(*app), 0u);
  EXPECT_EQ(textOf(helperPath()), older);
  expectNothingLeft();
}

TEST_F(Versions, AnOlderOneIsUpdatedWithTheButtonAndSamples) {
  installOlderHelper();
  const auto app = startHeadless(pressing(samples(3)));
  expectSamples(*app, 3);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
  expectNothingLeft();
  // The next start finds nothing to press.
  const auto next = startHeadless(samples(1));
  expectSamples(*next, 1);
}

TEST_F(Versions, OneThatDiffersOnlyInCaseOrPaddingIsStatus4) {
  installHelper();
  const auto shown = start({"--version"});
  std::string version = shown->readAll();
  version = version.substr(version.find(' ') + 1);
  version.pop_back();
  for (const std::string& said :
       {version + " ", " " + version, "v" + version, version + "\\n", std::string()}) {
    planFaults(R"("helperVersion": ")" + said + R"(")");
    const auto app = startHeadless(samples(1));
    expectOutOfDate(*app);
    expectNothingLeft();
  }
}

TEST_F(Versions, OneThatSaysTheRightVersionInsteadOfItsOwnIsTrusted) {
  installOlderHelper();
  const auto shown = start({"--version"});
  std::string version = shown->readAll();
  version = version.substr(version.find(' ') + 1);
  version.pop_back();
  planFaults(R"("helperVersion": ")" + version + R"(")");
  const auto app = startHeadless(samples(1));
  expectSamples(*app, 1);
}

// A helper that is there and does not do what it should.

using Failures = HelperLife;

TEST_F(Failures, ASilentHelperIsStatus3) {
  installHelper();
  planFaults(R"("helperSilent": true)");
  const auto app = startHeadless(samples(1));
  expectNotUsable(*app);
  expectNothingLeft();
}

TEST_F(Failures, ASilentHelperIsStatus3AlsoWithTheButton) {
  installHelper();
  planFaults(R"("helperSilent": true)");
  const auto app = startHeadless(pressing(samples(1)));
  expectEnd(*app, 3,
            "the helper does not answer, 5 seconds after its installation; the system log may say "
            "why");
  EXPECT_GE(presses(*app), 1u);
  expectNothingLeft();
}

TEST_F(Failures, AHelperThatAnswersNoIsStatus3) {
  installHelper();
  planFaults(R"("helperAnswersNo": true)");
  const auto app = startHeadless(samples(1));
  expectNotUsable(*app);
  expectNothingLeft();
}

TEST_F(Failures, ARefusedAuthorizationStopsTheProgram) {
  planFaults(R"("authorizationStatus": -60005)");
  const auto app = startHeadless(pressing(samples(1)));
  EXPECT_EQ(app->exitStatus(), -SIGABRT);
  EXPECT_EQ(app->readAll(), "");
  const std::string text = app->errorText();
  EXPECT_TRUE(text.ends_with("INSTALL HELPER\nAuthorization not acquired.\n")) << text;
  // Its status goes to the system's log alone.
  EXPECT_EQ(text.find("PWMJBS"), std::string::npos) << text;
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(Failures, ARefusedInstallationIsStatus5AndInstallsNothing) {
  planFaults(R"("blessRefused": true)");
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_EQ(presses(*app), 1u);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(Failures, ARefusedUpdateIsStatus5AndLeavesNoHelper) {
  installOlderHelper();
  planFaults(R"("blessRefused": true)");
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(Failures, AHelperThatDiesOnARequestIsStatus6) {
  installHelper();
  planFaults(R"("helperDiesOnRequest": 4)");
  const auto app = startHeadless({"--format", "csv", "--speed", "20"});
  EXPECT_EQ(app->exitStatus(), 6);
  EXPECT_LE(app->readLines(100).size(), 4u);  // a header and three rows
  expectNothingLeft();
}

TEST_F(Failures, AHelperThatDiesAgainAndAgainIsPutBackWithTheButton) {
  planFaults(R"("helperDiesOnRequest": 5)");
  const auto app = startHeadless(pressing(samples(9)));
  expectSamples(*app, 9);
  EXPECT_GE(presses(*app), 3u);  // four rows a life at most
  expectNothingLeft();
}

// A helper that is lost, or held up, while it samples.

using Losses = HelperLife;

TEST_F(Losses, KilledAtTenRandomMomentsTheRunGivesAllItsSamples) {
  constexpr std::size_t kSamples = 120;
  std::mt19937 random(20'261'121);
  const auto app = startHeadless(pressing(samples(kSamples)));
  Texts lines = app->readLines(1);
  for (int kills = 0; kills < 10;) {
    const Texts more = app->readLines(1 + random() % 5);
    ASSERT_FALSE(more.empty()) << app->errorText();
    lines.insert(lines.end(), more.begin(), more.end());
    const auto running = helpersOf();
    if (running.empty()) continue;  // rows of the last life
    // Any moment within a second of the run's time.
    running[0].isGoneInTime(std::chrono::milliseconds(random() % 50));
    running[0].send(SIGKILL);
    EXPECT_TRUE(running[0].isGoneInTime());
    ++kills;
  }
  for (const std::string& line : app->readLines(kSamples)) lines.push_back(line);
  EXPECT_EQ(lines.size(), kSamples + 1);
  for (const std::string& line : lines) EXPECT_EQ(columnsOf(line).size(), 18u) << line;
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
  EXPECT_GE(presses(*app), 2u);
  expectNothingLeft();
}

TEST_F(Losses, StoppedForTenSecondsNothingIsLost) {
  constexpr std::size_t kSamples = 40;
  std::vector<std::optional<SampleDocument>> steps;
  for (int step = 1; step <= 100; ++step) steps.emplace_back(drawing(step * 1000));
  installHelper();
  Texts arguments = samples(kSamples);
  arguments.insert(arguments.end(), {"--machine", recording(steps)});
  const auto app = startHeadless(arguments);
  Texts lines = app->readLines(4);
  const auto running = helpersOf();
  ASSERT_EQ(running.size(), 1u);
  running[0].send(SIGSTOP);
  EXPECT_FALSE(running[0].isGoneInTime(500ms));  // ten seconds of the run's time
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

TEST_F(Losses, AKilledAppLeavesAHelperThatEndsItsRunsAtOnceAndThenItself) {
  installHelper();
  std::ofstream(stateFolder() / "settings.ini") << "[General]\nsamplingResolution=3600000\n";
  const auto app = startHeadless({"--format", "csv"});
  const std::vector<WatchedProcess> runs = runsUnderWay();
  ASSERT_FALSE(runs.empty());
  const auto helpers = helpersOf();
  ASSERT_EQ(helpers.size(), 1u);
  app->send(SIGKILL);
  EXPECT_EQ(app->exitStatus(), -SIGKILL);
  for (const WatchedProcess& run : runs) EXPECT_TRUE(run.isGoneInTime());
  EXPECT_FALSE(helpers[0].isGoneInTime(0ms));  // it waits five seconds for somebody else
  expectNothingLeft();
}

// A state folder that can't be written.

using UnusableFolder = HelperLife;

TEST_F(UnusableFolder, AFolderInTheHelpersPlaceIsStatus5) {
  fs::create_directories(helperPath());
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  expectNothingLeft();
}

TEST_F(UnusableFolder, AHelperThatDoesNotFitIsStatus5AndLeavesNoPiece) {
  AppProcess::Conditions conditions;
  conditions.longestFile = 16 << 10;
  const auto app = startHeadlessUnder(conditions, pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(UnusableFolder, AHelperThatDoesNotFitLeavesTheInstalledOneAlone) {
  installHelper();
  std::ofstream(helperPath()) << "not a program";
  AppProcess::Conditions conditions;
  conditions.longestFile = 16 << 10;
  const auto app = startHeadlessUnder(conditions, pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_EQ(textOf(helperPath()), "not a program");
  expectNothingLeft();
}

/// A disk of its own in the state folder's place, where the system allows that.
class SmallDisk {
 public:
  SmallDisk(fs::path path, const std::string& size) : path_(std::move(path)) {
    const std::string options = "mode=0700,size=" + size;
    isThere_ = mount("tmpfs", path_.c_str(), "tmpfs", MS_NOSUID, options.c_str()) == 0;
    if (!isThere_) std::cout << "No disk can be mounted here, nothing was tested.\n";
  }
  ~SmallDisk() {
    if (isThere_) umount2(path_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool isThere() const { return isThere_; }

 private:
  const fs::path path_;
  bool isThere_;
};

TEST_F(UnusableFolder, AFullDiskIsStatus2AndLeavesNoPiece) {
  makeStateFolder();
  const SmallDisk disk(stateFolder(), "4k");
  if (!disk.isThere()) return;
  std::ofstream(stateFolder() / "settings.ini") << std::string(4096, ';');
  const auto app = startHeadless(pressing(samples(1)));
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(), "pallimo: can't write \"" +
                                  (stateFolder() / "simulation.json").string() +
                                  "\": No space left on device\n");
  EXPECT_EQ(stateEntries(), Texts{"settings.ini"});
}

TEST_F(UnusableFolder, ADiskWithoutRoomForTheHelperIsStatus5) {
  makeStateFolder();
  const SmallDisk disk(stateFolder(), "64k");
  if (!disk.isThere()) return;
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

/// The tests may be root's, whom no mode stops; then somebody else has to start the app.
class ReadOnlyFolder : public HelperLife {
 protected:
  ReadOnlyFolder() {
    if (geteuid() == 0) {
      conditions_.user = kNobody;
      fs::permissions(root_, fs::perms(0755));
    }
    makeStateFolder();
    give(stateFolder());
  }
  ~ReadOnlyFolder() override { fs::permissions(stateFolder(), fs::perms(0700)); }

  void give(const fs::path& path) const {
    if (conditions_.user) {
      EXPECT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
    }
  }

  /// The run's status and last words; nothing when that user may not even read the program.
  std::optional<int> statusOfARun() {
    app_ = startHeadlessUnder(conditions_, pressing(samples(1)));
    const std::optional<int> status = app_->exitStatus();
    if (status != AppProcess::kNotStarted) return status;
    std::cout << "The build's folder is closed to other users, nothing was tested.\n";
    return std::nullopt;
  }

  AppProcess::Conditions conditions_;
  std::unique_ptr<AppProcess> app_;
};

TEST_F(ReadOnlyFolder, IsStatus2) {
  fs::permissions(stateFolder(), fs::perms(0500));
  const auto status = statusOfARun();
  if (!status) return;
  EXPECT_EQ(status, 2);
  EXPECT_EQ(app_->errorText(), "pallimo: can't write \"" +
                                   (stateFolder() / "simulation.json").string() +
                                   "\": Permission denied\n");
  EXPECT_EQ(stateEntries(), Texts());
}

TEST_F(ReadOnlyFolder, OneWhoseHelpersFolderIsAnotherUsersIsStatus5) {
  if (!conditions_.user) return;  // one user can't give a folder to another
  fs::create_directory(helperPath().parent_path());
  fs::permissions(helperPath().parent_path(), fs::perms(0755));
  const auto status = statusOfARun();
  if (!status) return;
  expectRefusal(*app_);
  EXPECT_FALSE(fs::exists(helperPath()));
}

}  // namespace
}  // namespace pallimo::end_to_end
