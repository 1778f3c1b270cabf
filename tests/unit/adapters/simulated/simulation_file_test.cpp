// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulation_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <thread>

#include "unit/adapters/simulated/recordings/recording_folder.h"

namespace pallimo::adapters::simulated {
namespace {

const Simulation kBuiltin{.machine = "MacBook Pro M2 Pro",
                          .recording = "",
                          .seed = 18446744073709551615U,
                          .speed = 2.5,
                          .startTime = 1790000000.125};

Simulation builtinWith(const Faults& faults) {
  Simulation simulation = kBuiltin;
  simulation.faults = faults;
  return simulation;
}

std::string complaint(const std::variant<Simulation, SimulationError>& result) {
  const auto* error = std::get_if<SimulationError>(&result);
  return error == nullptr ? "no error" : error->message;
}

TEST(SimulationFile, IsReadableText) {
  EXPECT_EQ(formatSimulation(kBuiltin),
            "{\n"
            "  \"format\": 1,\n"
            "  \"machine\": \"MacBook Pro M2 Pro\",\n"
            "  \"seed\": 18446744073709551615,\n"
            "  \"speed\": 2.5,\n"
            "  \"startTime\": 1790000000.125\n"
            "}\n");
}

TEST(SimulationFile, OnlyPlannedFaultsAreWritten) {
  EXPECT_EQ(formatSimulation(builtinWith({.authorizationStatus = -60005, .helperSilent = true})),
            "{\n"
            "  \"format\": 1,\n"
            "  \"machine\": \"MacBook Pro M2 Pro\",\n"
            "  \"seed\": 18446744073709551615,\n"
            "  \"speed\": 2.5,\n"
            "  \"startTime\": 1790000000.125,\n"
            "  \"faults\": {\n"
            "    \"authorizationStatus\": -60005,\n"
            "    \"helperSilent\": true\n"
            "  }\n"
            "}\n");
}

TEST(SimulationFile, ReadsEveryFault) {
  const auto parsed = parseSimulation(R"({"format": 1, "machine": "x", "faults": {
      "authorizationStatus": -2147483648, "blessRefused": true, "helperSilent": true,
      "helperAnswersNo": true, "helperVersion": " 0.1.0", "helperDiesOnRequest": 4294967295}})");
  ASSERT_EQ(complaint(parsed), "no error");
  EXPECT_EQ(std::get<Simulation>(parsed).faults, (Faults{.authorizationStatus = -2147483647 - 1,
                                                         .blessRefused = true,
                                                         .helperSilent = true,
                                                         .helperAnswersNo = true,
                                                         .helperVersion = " 0.1.0",
                                                         .helperDiesOnRequest = 4294967295U}));
}

TEST(SimulationFile, AFaultThatIsFalseIsNone) {
  const auto parsed = parseSimulation(R"({"format": 1, "machine": "x", "faults": {
      "blessRefused": false, "helperSilent": false, "helperAnswersNo": false}})");
  ASSERT_EQ(complaint(parsed), "no error");
  EXPECT_EQ(std::get<Simulation>(parsed).faults, Faults());
}

TEST(SimulationFile, EveryFaultReadsBack) {
  for (const Faults& faults :
       {Faults{.authorizationStatus = 0}, Faults{.authorizationStatus = 2147483647},
        Faults{.blessRefused = true}, Faults{.helperSilent = true}, Faults{.helperAnswersNo = true},
        Faults{.helperVersion = ""}, Faults{.helperVersion = "\u00fc\n\""},
        Faults{.helperDiesOnRequest = 1}}) {
    const Simulation simulation = builtinWith(faults);
    const auto parsed = parseSimulation(formatSimulation(simulation));
    ASSERT_EQ(complaint(parsed), "no error");
    EXPECT_EQ(std::get<Simulation>(parsed), simulation);
  }
}

TEST(SimulationFile, ReadsBackWhatItWrote) {
  const Simulation recorded{
      .machine = "", .recording = "/a b/\u00fc\n\"", .seed = 2, .speed = 100, .startTime = 0};
  for (const Simulation& simulation : {kBuiltin, recorded}) {
    const auto parsed = parseSimulation(formatSimulation(simulation));
    ASSERT_EQ(complaint(parsed), "no error");
    EXPECT_EQ(std::get<Simulation>(parsed), simulation);
  }
}

TEST(SimulationFile, AbsentKeysTakeTheirDefaults) {
  const auto parsed = parseSimulation(R"({"format": 1, "machine": "x"})");
  ASSERT_EQ(complaint(parsed), "no error");
  EXPECT_EQ(std::get<Simulation>(parsed), (Simulation{.machine = "x", .recording = ""}));
}

struct Broken {
  std::string text;
  std::string line;
};

std::ostream& operator<<(std::ostream& out, const Broken& broken) { return out << broken.text; }

class BrokenSimulation : public ::testing::TestWithParam<Broken> {};

TEST_P(BrokenSimulation, IsRefusedWithOneLine) {
  EXPECT_EQ(complaint(parseSimulation(GetParam().text)), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenSimulation,
    ::testing::Values(
        Broken{"", "line 1, column 1: expected JSON, got something else"},
        Broken{"[]", "expected an object, got an empty array"},
        Broken{R"({"machine": "x"})", "format: expected 1, got nothing"},
        Broken{R"({"format": 2, "machine": "x"})", "format: expected 1, got 2"},
        Broken{R"({"format": 1})", "expected either a machine or a recording, got none"},
        Broken{R"({"format": 1, "machine": "x", "recording": "/y"})",
               "expected either a machine or a recording, got both"},
        Broken{R"({"format": 1, "machine": 1})", "machine: expected a text, got 1"},
        Broken{R"({"format": 1, "recording": 1})", "recording: expected a text, got 1"},
        Broken{R"({"format": 1, "recording": "here"})",
               "recording: expected an absolute path, got \"here\""},
        Broken{R"({"format": 1, "machine": "x", "seed": -1})",
               "seed: expected an unsigned 64-bit number, got -1"},
        Broken{R"({"format": 1, "machine": "x", "seed": 1.5})",
               "seed: expected an unsigned 64-bit number, got 1.5"},
        Broken{R"({"format": 1, "machine": "x", "speed": 0.5})",
               "speed: expected a number from 1 to 100, got 0.5"},
        Broken{R"({"format": 1, "machine": "x", "speed": 101})",
               "speed: expected a number from 1 to 100, got 101"},
        Broken{R"({"format": 1, "machine": "x", "speed": "1"})",
               "speed: expected a number, got \"1\""},
        Broken{R"({"format": 1, "machine": "x", "startTime": -1})",
               "startTime: expected seconds since 1970, got -1"},
        Broken{R"({"format": 1, "machine": "x", "startTime": 1e12})",
               "startTime: expected seconds since 1970, got 1000000000000.0"},
        Broken{R"({"format": 1, "machine": "x", "fault": {}})",
               "fault: expected one of the keys format, machine, recording, seed, speed, "
               "startTime, faults, got an unknown key"},
        Broken{R"({"format": 1, "machine": "x", "faults": true})",
               "faults: expected an object, got true"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"helperDies": 1}})",
               "faults.helperDies: expected one of the keys authorizationStatus, blessRefused, "
               "helperSilent, helperAnswersNo, helperVersion, helperDiesOnRequest, got an unknown "
               "key"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"authorizationStatus": 1.5}})",
               "faults.authorizationStatus: expected a signed 32-bit number, got 1.5"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"authorizationStatus": 2147483648}})",
               "faults.authorizationStatus: expected a signed 32-bit number, got 2147483648"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"authorizationStatus": -2147483649}})",
               "faults.authorizationStatus: expected a signed 32-bit number, got -2147483649"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"blessRefused": 1}})",
               "faults.blessRefused: expected true or false, got 1"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"helperVersion": null}})",
               "faults.helperVersion: expected a text, got null"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"helperDiesOnRequest": 0}})",
               "faults.helperDiesOnRequest: expected a number from 1, got 0"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"helperDiesOnRequest": -1}})",
               "faults.helperDiesOnRequest: expected an unsigned 32-bit number, got -1"},
        Broken{R"({"format": 1, "machine": "x", "faults": {"blessRefused": true,
                  "blessRefused": true}})",
               "faults.blessRefused: expected each key once, got it twice"},
        Broken{R"({"format": 1, "machine": "x", "machine": "y"})",
               "machine: expected each key once, got it twice"}));

class WrittenSimulation : public ::testing::Test {
 protected:
  std::string path() const { return folder_.pathOf("simulation.json"); }
  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_.path()), {}));
  }

  RecordingFolder folder_;
};

TEST_F(WrittenSimulation, ReadsBackFromItsFile) {
  EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  const auto read = readSimulation(path());
  ASSERT_EQ(complaint(read), "no error");
  EXPECT_EQ(std::get<Simulation>(read), kBuiltin);
}

TEST_F(WrittenSimulation, BelongsToItsUserAlone) {
  EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  struct stat status = {};
  ASSERT_EQ(stat(path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(WrittenSimulation, ReplacesTheOldFileAndLeavesNothingBeside) {
  folder_.write("simulation.json", "old");
  EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  EXPECT_EQ(folder_.read("simulation.json"), formatSimulation(kBuiltin));
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(WrittenSimulation, AReaderOfTheOldFileKeepsItsText) {
  folder_.write("simulation.json", "old");
  std::ifstream reader(path());
  EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(WrittenSimulation, SaysWhyItCannotBeWritten) {
  const std::string missing = folder_.pathOf("none/simulation.json");
  EXPECT_EQ(writeSimulation(missing, kBuiltin),
            "can't write \"" + missing + "\": No such file or directory");
}

TEST_F(WrittenSimulation, LeavesNothingBehindWhenItCannotReplace) {
  std::filesystem::create_directories(folder_.pathOf("simulation.json/x"));
  EXPECT_NE(writeSimulation(path(), kBuiltin), "");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(WrittenSimulation, SaysWhyItCannotBeRead) {
  EXPECT_EQ(complaint(readSimulation(path())),
            path() + ": expected a readable file, got: No such file or directory");
}

TEST_F(WrittenSimulation, SaysInWhichFileTheTextIsBroken) {
  folder_.write("simulation.json", "{}");
  EXPECT_EQ(complaint(readSimulation(path())), path() + ": format: expected 1, got nothing");
}

TEST_F(WrittenSimulation, ItsFaultsAreKnownToWhoeverComesNext) {
  const Faults faults{.helperVersion = "0.0.9", .helperDiesOnRequest = 4};
  EXPECT_EQ(writeSimulation(path(), builtinWith(faults)), "");
  EXPECT_EQ(plannedFaults(path()), faults);
}

TEST_F(WrittenSimulation, AFileThatIsNotThereHasNoFaults) {
  EXPECT_EQ(plannedFaults(path()), Faults());
}

TEST_F(WrittenSimulation, ABrokenFileHasNoFaults) {
  folder_.write("simulation.json", R"({"format": 1, "faults": {"blessRefused": true}})");
  EXPECT_EQ(plannedFaults(path()), Faults());
}

TEST_F(WrittenSimulation, WhatAKilledWriterLeftIsRemoved) {
  folder_.write("simulation.json.new", "half a fi");
  EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  EXPECT_EQ(folder_.read("simulation.json"), formatSimulation(kBuiltin));
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(WrittenSimulation, WritersAtOnceTakeTurns) {
  const auto writeOften = [this] {
    for (int i = 0; i < 200; ++i) EXPECT_EQ(writeSimulation(path(), kBuiltin), "");
  };
  std::thread other(writeOften);
  writeOften();
  other.join();
  EXPECT_EQ(folder_.read("simulation.json"), formatSimulation(kBuiltin));
  EXPECT_EQ(filesInFolder(), 1u);
}

/// What an app that is about to rewrite the file keeps of it.
class KeptFaults : public WrittenSimulation {
 protected:
  std::variant<Faults, SimulationError> keptOf(const std::string& text) {
    folder_.write("simulation.json", text);
    return keptFaults(path());
  }
  /// What is wrong, after the file's name; "(none)" when nothing is.
  std::string complaintAbout(const std::string& text) {
    const auto kept = keptOf(text);
    const auto* error = std::get_if<SimulationError>(&kept);
    if (error == nullptr) return "(none)";
    EXPECT_EQ(error->message.rfind(path() + ": ", 0), 0u) << error->message;
    return error->message.substr(path().size() + 2);
  }
  static bool areNone(const std::variant<Faults, SimulationError>& kept) {
    const auto* faults = std::get_if<Faults>(&kept);
    return faults != nullptr && *faults == Faults();
  }
};

TEST_F(KeptFaults, AreThoseOfTheFile) {
  const Faults faults{.blessRefused = true};
  const auto kept = keptOf(formatSimulation(builtinWith(faults)));
  ASSERT_TRUE(std::holds_alternative<Faults>(kept));
  EXPECT_EQ(std::get<Faults>(kept), faults);
}

TEST_F(KeptFaults, AreNoneWithoutAFile) { EXPECT_TRUE(areNone(keptFaults(path()))); }

TEST_F(KeptFaults, AreNoneInAFileWithoutThem) {
  EXPECT_TRUE(areNone(keptOf(formatSimulation(kBuiltin))));
}

TEST_F(KeptFaults, AreNoneInABrokenFileThatNamesNone) {
  for (const auto* text : {"", "{", "[]", "old", R"({"format": 2})"}) {
    EXPECT_TRUE(areNone(keptOf(text))) << text;
  }
}

TEST_F(KeptFaults, AreNoneWhenTheFileIsBrokenElsewhere) {
  EXPECT_TRUE(areNone(keptOf(R"({"format": 1, "faults": {"blessRefused": true}})")));
}

TEST_F(KeptFaults, WithAnUnknownKeyAreAnError) {
  EXPECT_EQ(complaintAbout(R"({"format": 1, "machine": "x", "faults": {"helperDies": 1}})"),
            "faults.helperDies: expected one of the keys authorizationStatus, blessRefused, "
            "helperSilent, helperAnswersNo, helperVersion, helperDiesOnRequest, got an unknown "
            "key");
}

TEST_F(KeptFaults, OfTheWrongTypeAreAnErrorAlsoInABrokenFile) {
  EXPECT_EQ(complaintAbout(R"({"faults": {"blessRefused": 1}})"),
            "faults.blessRefused: expected true or false, got 1");
}

TEST_F(KeptFaults, ThatStandTwiceAreAnError) {
  EXPECT_EQ(complaintAbout(R"({"faults": {"helperSilent": true, "helperSilent": true}})"),
            "faults.helperSilent: expected each key once, got it twice");
}

TEST_F(KeptFaults, InATextThatIsNoJsonAreAnErrorInOneLine) {
  const std::string complaint = complaintAbout("{\"faults\": {\"blessRefused\": true}\n");
  EXPECT_NE(complaint, "(none)");
  EXPECT_EQ(complaint.find('\n'), std::string::npos);
}

TEST_F(WrittenSimulation, AFileThatCannotBeOneIsNotReadToItsEnd) {
  folder_.write("simulation.json", std::string(65537, ' '));
  EXPECT_EQ(complaint(readSimulation(path())),
            path() + ": expected a readable file, got: Larger than 65536 bytes");
}

TEST_F(WrittenSimulation, ANamedPipeIsRefusedInsteadOfWaitedFor) {
  ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
  EXPECT_EQ(complaint(readSimulation(path())),
            path() + ": expected a readable file, got: Not a regular file");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
