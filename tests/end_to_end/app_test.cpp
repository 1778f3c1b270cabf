// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/file.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "end_to_end/app_fixture.h"
#include "logging/log_file_data.h"

namespace pallimo::end_to_end {
namespace {

using AppOutput = AppWithHelperTest;

TEST_F(AppOutput, ThreeSamplesAsCsv) {
  const auto app = startHeadless({"--format", "csv", "--samples", "3", "--speed", "20"});
  EXPECT_EQ(app->readLine(), std::string(logging::kCsvHeader));
  for (const std::string& line : app->readLines(3)) EXPECT_EQ(columnsOf(line).size(), 18u) << line;
  EXPECT_EQ(app->readAll(), "");
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
}

TEST_F(AppOutput, ThreeSamplesAsJson) {
  const auto app = startHeadless({"--format", "json", "--samples", "3", "--speed", "20"});
  double elapsed = -1;
  for (const std::string& line : app->readLines(3)) {
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object.size(), 19u);
    EXPECT_GT(object["pkgPower"].get<double>(), 0);
    EXPECT_GT(object["ellapsedTime"].get<double>(), elapsed);
    elapsed = object["ellapsedTime"];
  }
  EXPECT_GT(elapsed, 0);
  EXPECT_EQ(app->readAll(), "");
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppOutput, ThreeSamplesAsATableForPeople) {
  const auto app = startHeadless({"--samples", "3", "--speed", "20"});
  const Texts lines = app->readLines(5);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_NE(lines[0].find("Power (W)"), std::string::npos);
  for (const std::string& line : lines) EXPECT_EQ(line.size(), 123u) << line;
  EXPECT_EQ(app->readAll(), "");
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppOutput, AtRealSpeedSamplesComeASecondApart) {
  const auto app = startHeadless({"--format", "json", "--samples", "2"});
  const Texts lines = app->readLines(2);
  ASSERT_EQ(lines.size(), 2u);
  const double elapsed = nlohmann::json::parse(lines[1])["ellapsedTime"];
  EXPECT_GT(elapsed, 0.5);
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppOutput, ARecordingsFiguresToTheLastDigitAlsoInAFasterRun) {
  SampleDocument second;
  second.combinedPower = 20500;
  second.cpuEnergy = 7250;
  second.efficiencyHz = 2.064e9;
  second.performanceHz = 3.504e9;
  second.gpuMegahertz = 1398;
  const auto app = startHeadless({"--format", "csv", "--samples", "4", "--speed", "20", "--machine",
                                  recording({SampleDocument{}, std::nullopt, second})});
  const Texts lines = app->readLines(5);
  ASSERT_EQ(lines.size(), 5u);
  const std::string noSensors = ", -1, nan, -1, nan, nan, nan, nan, 0.000";
  const std::string first = "12.000, 8.000, 1.000, 0.100, 3.000, 1500, 3000, 444" + noSensors;
  const std::string last = "20.500, 14.500, 1.000, 0.100, 3.000, 2064, 3504, 1398" + noSensors;
  EXPECT_EQ(figuresOf(lines[1]), first);
  EXPECT_EQ(figuresOf(lines[2]), last);  // the step without a document is no row
  EXPECT_EQ(figuresOf(lines[3]), first);
  EXPECT_EQ(figuresOf(lines[4]), last);
  EXPECT_EQ(columnsOf(lines[1])[1], "0.000");
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppOutput, TheSettingsOfTheStateFolderHold) {
  std::ofstream(stateFolder() / "settings.ini") << "[General]\nsamplingResolution=1000\n";
  const auto app = startHeadless({"--format", "csv", "--samples", "1", "--speed", "20", "--machine",
                                  recording({SampleDocument{}})});
  const Texts lines = app->readLines(2);
  ASSERT_EQ(lines.size(), 2u);
  // Energies are spread over twice the time; the package's figure is a power already.
  EXPECT_EQ(figuresOf(lines[1]).substr(0, 35), "12.000, 4.000, 0.500, 0.050, 1.500,");
}

TEST_F(AppOutput, AClosedReaderEndsTheRunWithStatus0) {
  const auto app = startHeadless({"--format", "csv", "--speed", "20"});
  app->readLines(2);
  app->closeOutput();
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
}

TEST_F(AppOutput, AFullDiskIsStatus1) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  AppProcess app({"--headless", "--state-dir", stateFolder(), "--speed", "20"}, root_ / "err", {},
                 full);
  close(full);
  EXPECT_EQ(app.exitStatus(), 1);
  EXPECT_EQ(app.errorText(), "pallimo: can't write to standard output: No space left on device\n");
}

using AppEnd = AppWithHelperTest;

TEST_F(AppEnd, InterruptedByTheUserItEndsWithStatus0AndLeavesNoProcess) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto app = startHeadless({"--format", "csv", "--speed", "20"});
    app->readLines(2);
    const auto helpers = helpersOf();
    EXPECT_EQ(helpers.size(), 1u);
    app->send(signal);
    const std::string rest = app->readAll();
    EXPECT_TRUE(rest.empty() || rest.back() == '\n') << rest;
    EXPECT_EQ(app->exitStatus(), 0);
    EXPECT_EQ(app->errorText(), "");
    for (const auto& helper : helpers) EXPECT_TRUE(helper.isGoneInTime());
  }
}

TEST_F(AppEnd, AtItsEndTheHelperIsClosed) {
  const auto app = startHeadless({"--format", "csv", "--speed", "20"});
  app->readLines(2);
  const auto helpers = helpersOf();
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0);
  // Told to close; without that it would stay five seconds.
  for (const auto& helper : helpers) {
    EXPECT_TRUE(helper.isGoneInTime(std::chrono::milliseconds(4000)));
  }
}

TEST_F(AppEnd, AHelperThatIsKilledWhileSamplingIsStatus6) {
  const auto app = startHeadless({"--format", "csv", "--speed", "20"});
  app->readLines(3);
  for (const auto& helper : helpersOf()) helper.send(SIGKILL);
  EXPECT_EQ(app->exitStatus(), 6);
  EXPECT_EQ(app->errorText(),
            "connetionInterruptionHandler\n"
            "pallimo: the helper was lost while sampling; start again, or run with "
            "--install-helper to go on\n");
  for (const auto& helper : helpersOf()) EXPECT_TRUE(helper.isGoneInTime());
}

TEST_F(AppEnd, WithTheInstallButtonItGoesOnAfterAHelperWasKilled) {
  const auto app = startHeadless({"--format", "csv", "--install-helper", "--speed", "20"});
  EXPECT_EQ(app->readLines(3).size(), 3u);
  const auto first = helpersOf();
  ASSERT_EQ(first.size(), 1u);
  first[0].send(SIGKILL);
  EXPECT_TRUE(first[0].isGoneInTime());
  // More than the rows that may still have been under way.
  EXPECT_EQ(app->readLines(30).size(), 30u);
  const auto second = helpersOf();
  ASSERT_EQ(second.size(), 1u);
  EXPECT_NE(second[0].number(), first[0].number());
  app->send(SIGINT);
  for (const std::string& rest : app->readLines(100'000)) {
    EXPECT_EQ(columnsOf(rest).size(), 18u) << rest;
  }
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_NE(app->errorText().find("INSTALL HELPER\n"), std::string::npos);
}

TEST_F(AppEnd, AHelperThatCannotServeIsStatus3AfterFiveSeconds) {
  const int lock =
      open((stateFolder() / "helper.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  const auto app = startHeadless({"--format", "csv", "--speed", "20"});
  EXPECT_EQ(app->exitStatus(), 3);
  close(lock);
  EXPECT_EQ(app->readAll(), "");
  const std::string text = app->errorText();
  EXPECT_TRUE(
      text.ends_with("pallimo: the helper is absent or does not answer; run with "
                     "--install-helper to install it\n"))
      << text;
}

TEST_F(AppEnd, AnotherProcessorIsStatus3AndNoHelperIsStarted) {
  const auto app =
      startHeadless({"--machine", recording({SampleDocument{}}, 7), "--install-helper"});
  EXPECT_EQ(app->exitStatus(), 3);
  EXPECT_EQ(app->errorText(),
            "pallimo: this app is only for Apple silicon; it does not work on this processor\n");
  EXPECT_TRUE(helpersOf().empty());
  EXPECT_FALSE(fs::exists(stateFolder() / "helper.lock"));  // which every helper leaves behind
}

using AppState = AppWithHelperTest;

TEST_F(AppState, TwoRunsInTwoFoldersNeverMeet) {
  installHelper("other");
  const auto one = startHeadless({"--format", "csv", "--speed", "20", "--machine",
                                  recording({drawing(1000)}, 0x0100000C, "one")});
  const auto other = startHeadless({"--format", "csv", "--speed", "20", "--machine",
                                    recording({drawing(2000)}, 0x0100000C, "two")},
                                   "other");
  for (int row = 0; row < 2; ++row) {
    one->readLine();
    other->readLine();
  }
  for (const auto& helper : helpersOf("state")) helper.send(SIGKILL);
  EXPECT_EQ(one->exitStatus(), 6);
  for (const std::string& line : other->readLines(5)) {
    EXPECT_EQ(columnsOf(line)[2], "2.000") << line;
  }
  other->send(SIGINT);
  EXPECT_EQ(other->exitStatus(), 0);
}

TEST_F(AppState, AnInstalledFileThatIsNotTheHelperIsReplaced) {
  std::ofstream(helperPath()) << "not a program";
  const auto app =
      startHeadless({"--install-helper", "--format", "csv", "--samples", "1", "--speed", "20"});
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(textOf(helperPath()), textOf(embeddedHelper()));
}

TEST_F(AppState, ARunFollowsTheMachineOfItsOwnStart) {
  for (const int milliwatts : {1000, 2000}) {
    const auto app = startHeadless({"--format", "csv", "--samples", "1", "--speed", "20",
                                    "--machine", recording({drawing(milliwatts)})});
    const Texts lines = app->readLines(2);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(columnsOf(lines[1])[2], std::to_string(milliwatts / 1000) + ".000");
    EXPECT_EQ(app->exitStatus(), 0);
  }
}

TEST_F(AppState, ARelativeFolderIsFoundFromTheWorkingFolder) {
  const fs::path relative = fs::relative(stateFolder(), fs::current_path());
  const auto app =
      start({"--headless", "--samples", "1", "--speed", "20", "--state-dir", relative});
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_TRUE(fs::exists(stateFolder() / "simulation.json"));
}

TEST_F(AppState, ByDefaultItLiesWhereTheEnvironmentSays) {
  const Texts arguments = {"--headless", "--install-helper", "--samples", "1", "--speed", "20"};
  const auto first = start(arguments, {"XDG_STATE_HOME=" + (root_ / "x").string()});
  EXPECT_EQ(first->exitStatus(), 0);
  EXPECT_TRUE(fs::exists(root_ / "x/pallimo/simulation.json"));
  const auto second = start(arguments, {"XDG_STATE_HOME=relative", "HOME=" + root_.string()});
  EXPECT_EQ(second->exitStatus(), 0);
  EXPECT_TRUE(fs::exists(root_ / ".local/state/pallimo/simulation.json"));
}

TEST_F(AppState, WithoutAHomeTheFolderHasToBeNamed) {
  const auto app = start({"--headless"}, {"XDG_STATE_HOME=", "HOME="});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: there is no home folder to keep the state in; name a folder with "
            "--state-dir\n");
}

using AppRefusal = AppTest;

TEST_F(AppRefusal, AWrongOptionIsOneLineAndStatus2) {
  const auto app = start({"--sampels", "3"});
  EXPECT_EQ(app->readAll(), "");
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(), "pallimo: unknown option \"--sampels\"; see pallimo --help\n");
}

TEST_F(AppRefusal, ASpeedOutOfRangeIsStatus2) {
  const auto app = start({"--headless", "--speed", "101"});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: --speed takes a number from 1 to 100, not \"101\"; see pallimo --help\n");
}

TEST_F(AppRefusal, AnUnknownMachineIsStatus2) {
  const auto app = startHeadless({"--machine", "/nowhere"});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: there is no machine and no recording \"/nowhere\"; --list-machines lists "
            "the built-in machines\n");
}

TEST_F(AppRefusal, AMachineOfAnyNameIsOneLine) {
  const auto app = startHeadless({"--machine", "/no\nwhere\x1b"});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: there is no machine and no recording \"/no\\nwhere\\u001b\"; "
            "--list-machines lists the built-in machines\n");
}

TEST_F(AppRefusal, AFolderThatCannotBeLookedAtIsNotSaidToBeMissing) {
  const std::string name(300, 'x');  // longer than any file's
  const auto app = startHeadless({"--machine", name});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: can't find the recording \"" + name + "\": File name too long\n");
}

TEST_F(AppRefusal, ABrokenRecordingIsOneLineNamingTheKeyAndStatus2) {
  const std::string folder = recording({SampleDocument{}});
  std::ofstream(folder + "/machine.json")
      << R"({"format": 1, "name": "x", "sysctl": {}, "steps": [{"hdi": 1}]})";
  const auto app = startHeadless({"--machine", folder});
  EXPECT_EQ(app->exitStatus(), 2);
  const std::string text = app->errorText();
  EXPECT_EQ(text.rfind("pallimo: ", 0), 0u) << text;
  EXPECT_NE(text.find("machine.json"), std::string::npos) << text;
  EXPECT_NE(text.find("steps[0]"), std::string::npos) << text;
  EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
  EXPECT_FALSE(fs::exists(stateFolder()));
}

TEST_F(AppRefusal, AStateFolderThatCannotBeUsedIsStatus2) {
  const auto app = startHeadless({}, std::string(100, 'x'));
  EXPECT_EQ(app->exitStatus(), 2);
  const std::string text = app->errorText();
  EXPECT_EQ(text.rfind("pallimo: the state folder's path is too long: ", 0), 0u) << text;
}

TEST_F(AppRefusal, AWindowWithoutADisplayIsOneLineAndStatus2) {
  const auto app =
      start({"--state-dir", stateFolder()}, {"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="});
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: there is no display to show the window on; run with --headless\n");
  EXPECT_FALSE(fs::exists(stateFolder()));
}

/// The app with its window, on a display that nobody sees.
using AppWindow = AppTest;

TEST_F(AppWindow, StaysUntilItIsToldToEnd) {
  const auto app = start({"--state-dir", stateFolder()}, {"QT_QPA_PLATFORM=offscreen"});
  EXPECT_EQ(app->readLine(), "connectionInvalidationHandler");  // nothing is installed yet
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0);
  // The models live as long as the process.
  EXPECT_EQ(app->readAll().find("DEINIT XPCManager"), std::string::npos);
}

using AppAnswers = AppTest;

TEST_F(AppAnswers, Help) {
  const auto app = start({"--help"});
  EXPECT_EQ(app->readAll().rfind("Usage: pallimo [options]\n", 0), 0u);
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
}

TEST_F(AppAnswers, Version) {
  const auto app = start({"--version"});
  EXPECT_TRUE(std::regex_match(app->readAll(), std::regex("pallimo [0-9]+\\.[0-9]+\\.[0-9]+\n")));
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppAnswers, AnAnswerThatCanNotBeWrittenIsStatus1) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  AppProcess app({"--help"}, root_ / "err", {}, full);
  close(full);
  EXPECT_EQ(app.exitStatus(), 1);
  EXPECT_EQ(app.errorText(), "pallimo: can't write to standard output: No space left on device\n");
}

TEST_F(AppAnswers, ListMachinesNamesTheRecordingToo) {
  const std::string folder = recording({std::nullopt});
  const auto app = start({"--list-machines", "--machine", folder});
  const std::string text = app->readAll();
  EXPECT_EQ(text.rfind("MacBook Air M1 ", 0), 0u);
  const std::string last = "Test Mac             recording  " + folder + "\n";
  EXPECT_TRUE(text.ends_with("\n" + last)) << text;
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
}

TEST_F(AppAnswers, ListMachinesRefusesARecordingThatCannotBeRead) {
  const std::string folder = recording({std::nullopt});
  std::ofstream(folder + "/machine.json") << "[]";
  const auto app = start({"--list-machines", "--machine", folder});
  EXPECT_EQ(app->readAll(), "");
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(),
            "pallimo: " + folder + "/machine.json: expected an object, got an empty array\n");
}

TEST_F(AppAnswers, ListMachinesWithABuiltInOneIsTheListAlone) {
  const auto plain = start({"--list-machines"});
  const std::string list = plain->readAll();
  EXPECT_EQ(plain->exitStatus(), 0);
  const auto app = start({"--list-machines", "--machine", "mac mini m4"});
  EXPECT_EQ(app->readAll(), list);
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(AppAnswers, ListMachines) {
  const auto app = start({"--list-machines"});
  EXPECT_EQ(app->readAll().rfind("MacBook Air M1 ", 0), 0u);
  EXPECT_EQ(app->exitStatus(), 0);
}

}  // namespace
}  // namespace pallimo::end_to_end
