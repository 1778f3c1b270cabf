// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <map>
#include <regex>

#include "end_to_end/app_fixture.h"
#include "privacy/user_words.h"

namespace pallimo::end_to_end {
namespace {

/// `--diagnose` of the real program.
class DiagnoseTest : public AppTest {
 protected:
  /// The report; every one ends with status 0 and without a complaint.
  std::string diagnose(Texts arguments = {}, const Texts& environment = {}) const {
    arguments.insert(arguments.begin(), {"--diagnose", "--state-dir", stateFolder()});
    const auto app = start(arguments, environment);
    std::string report = app->readAll();
    EXPECT_EQ(app->exitStatus(), 0);
    EXPECT_EQ(app->errorText().find("pallimo: "), std::string::npos) << app->errorText();
    EXPECT_EQ(report.rfind("Pallimo ", 0), 0u) << report;
    said_ = app->errorText();
    return report;
  }

  /// What the last one said on standard error.
  mutable std::string said_;

  /// What the files of the state folder hold that are not the helper's own traces.
  std::map<std::string, std::string> stateFiles() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(stateFolder())) {
      const std::string name = entry.path().filename();
      const bool isTrace = name == "helper.lock" || name == "helper.socket";
      if (!isTrace && entry.is_regular_file()) files[entry.path()] = textOf(entry.path());
    }
    return files;
  }

  static std::string hostName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
  }

  /// A recording that holds these texts wherever a text may stand.
  std::string recordingWith(const std::string& planted) const {
    const fs::path folder = root_ / "planted";
    fs::create_directory(folder);
    const std::string text = "<string>" + planted + "</string>";
    const std::string head = R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)";
    std::ofstream(folder / "sample.plist")
        << head << "<dict><key>" << planted << "</key>" << text << "<key>kern_bootargs</key>"
        << text << "<key>processor</key><dict><key>clusters</key><array><dict><key>name</key>"
        << text << "</dict></array></dict></dict></plist>";
    std::ofstream(folder / "displays.plist")
        << head << "<array><dict><key>_items</key><array><dict><key>sppci_cores</key>" << text
        << "<key>serial</key>" << text << "</dict></array></dict></array></plist>";
    std::ofstream(folder / "machine.json")
        << R"({"format": 1, "name": ")" << planted << R"(", "sysctl": {"hw.cputype": 16777228,
               "hw.model": "Mac14,2 )"
        << planted << R"(", "kern.hostname": ")" << planted << R"(", "kern.osversion": ")"
        << planted << R"(", "machdep.cpu.brand_string": "Apple M2 )" << planted << R"("},
               "system_profiler": {"SPDisplaysDataType": "displays.plist"},
               "steps": [{"powermetrics": "sample.plist", "accelerators": [
                 {"vendor-id": "6B100000", "model": ")"
        << planted << R"(", "PerformanceStatistics": {}}]}]})";
    return folder;
  }
};

void expectSays(const std::string& report, const std::string& text) {
  EXPECT_NE(report.find(text), std::string::npos) << text << " is not in\n" << report;
}

TEST_F(DiagnoseTest, TellsOfAHelperThatServesAndOfOneSample) {
  installHelper();
  const std::string report = diagnose({"--machine", "Mac Studio M2 Ultra"});
  expectSays(report, "  chip                    Apple M2 Ultra\n");
  expectSays(report, "  source                  SMC\n");
  expectSays(report, "  state                   serves\n");
  expectSays(report, "  processor/clusters      list, 6 elements\n");
  expectSays(report, "\n  P3-Cluster              ");
  std::istringstream timing(report.substr(report.find("\nTiming of one sample\n") + 1));
  std::string line;
  std::getline(timing, line);
  for (const char* stage : {"request to result", "parse", "power", "utilisation", "frequency",
                            "temperature", "row", "from result to row"}) {
    std::getline(timing, line);
    EXPECT_TRUE(
        std::regex_match(line, std::regex("  " + std::string(stage) + " +\\d+\\.\\d{3} ms")))
        << stage << ": " << line;
  }
}

TEST_F(DiagnoseTest, WithoutAHelperItMakesNoFolder) {
  expectSays(diagnose(),
             "  state                   absent: not installed, or it can't be started\n");
  EXPECT_FALSE(fs::exists(stateFolder()));
}

TEST_F(DiagnoseTest, OfASilentHelperEndsToo) {
  installHelper();
  planFaults(R"("helperSilent": true)");
  expectSays(diagnose(), "  state                   silent: no answer within 5 seconds\n");
}

TEST_F(DiagnoseTest, SaysThatTheHelperIsOutOfDate) {
  installOlderHelper();
  planFaults("");
  const std::string report = diagnose();
  expectSays(report,
             "  state                   out of date: its version is not the embedded one's\n");
  expectSays(report, "  version                 0.0.9\n");
}

TEST_F(DiagnoseTest, SaysThatTheHelperDied) {
  installHelper();
  planFaults(R"("helperDiesOnRequest": 1)");
  expectSays(diagnose(), "  state                   lost: it ended while it was asked\n");
}

TEST_F(DiagnoseTest, IsAboutTheMachineOfTheLastRunAndChangesNothing) {
  installHelper();
  EXPECT_EQ(startHeadless({"--machine", "Mac Studio M2 Ultra", "--samples", "1", "--speed", "20"})
                ->exitStatus(),
            0);
  const auto before = stateFiles();
  EXPECT_FALSE(before.empty());
  expectSays(diagnose(), "  chip                    Apple M2 Ultra\n");
  EXPECT_EQ(stateFiles(), before);
}

TEST_F(DiagnoseTest, ARecordingOfTheLastRunThatIsGoneIsNoReasonToFail) {
  installHelper();
  const std::string recording = recordingWith("x");
  EXPECT_EQ(
      startHeadless({"--machine", recording, "--samples", "1", "--speed", "20"})->exitStatus(), 0);
  expectSays(diagnose(), "  chip                    Apple M2 x\n");
  fs::remove_all(recording);
  const auto before = stateFiles();
  expectSays(diagnose(), "  chip                    Apple M");
  EXPECT_EQ(stateFiles(), before);
}

TEST_F(DiagnoseTest, DisturbsNoOtherRun) {
  installHelper();
  const auto run = startHeadless({"--format", "csv", "--speed", "20"});
  EXPECT_EQ(run->readLines(2).size(), 2u);
  expectSays(diagnose(), "  state                   serves\n");
  EXPECT_EQ(run->readLines(2).size(), 2u);
  run->send(SIGINT);
  run->readAll();
  EXPECT_EQ(run->exitStatus(), 0);
}

TEST_F(DiagnoseTest, NamesNeitherUserNorHostNorSerialNumberNorHome) {
  installHelper();
  std::ofstream(stateFolder() / "settings.ini")
      << "[General]\npathFolderLocation=/home/wilhelmina/Logs\nreference=C02XG0FDH7JY\n";
  const Texts environment = {"HOME=/home/wilhelmina", "USER=wilhelmina", "LOGNAME=wilhelmina",
                             "HOSTNAME=minas-desk.example"};
  Texts secrets = {"wilhelmina", "/home/wilhelmina/Desktop", "/Users/Wilhelmina Doe/Desktop",
                   "minas-desk", "C02XG0FDH7JY"};
  const Texts otherWays = {"WILHELMINA's",          "%2FUsers%2Fcarol%2FDesktop",
                           "/home/carol/Desktop",   "~carol/Desktop",
                           "C:\\\\Users\\\\carol",  "sn c02xg0fdh7jy",
                           "Minas-Desk.example",    "id-8B4B2C1E-7d3f-4A59-9C62-0011AABBCCDD",
                           "en0:a4:83:e7:01:23:45", "carol@example.org"};
  secrets.insert(secrets.end(), otherWays.begin(), otherWays.end());
  Texts words = {"ilhelmina", "ILHELM", "Doe",      "inas-", "desk", "Desk",        "C02XG0",
                 "c02xg0",    "carol",  "8B4B2C1E", "a4:83", "Logs", root_.string()};
  // The machine that runs the test may be called like a product, or like a word of the report's.
  const std::string plain = diagnose({"--machine", "Mac Studio M2 Ultra"}, environment);
  const bool isPrivate = !privacy::wordsOfHostName(hostName()).empty() && hostName().size() > 1;
  if (isPrivate && plain.find(hostName()) == std::string::npos) {
    secrets.push_back(hostName());
    words.push_back(hostName());
  }
  for (const std::string& secret : secrets) {
    const std::string report = diagnose({"--machine", recordingWith(secret)}, environment);
    expectSays(report, "  state                   serves\n");
    expectSays(report, "(hidden)");
    for (const std::string& word : words) {
      EXPECT_EQ(report.find(word), std::string::npos) << word << " is in\n" << report;
      EXPECT_EQ(said_.find(word), std::string::npos) << word << " is in\n" << said_;
    }
  }
}

TEST_F(DiagnoseTest, AReaderThatIsGoneIsStatus0) {
  const auto app = start({"--diagnose", "--state-dir", stateFolder()});
  app->closeOutput();
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(DiagnoseTest, NeedsNoDisplay) {
  diagnose({}, {"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="});
}

}  // namespace
}  // namespace pallimo::end_to_end
