// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "tools/powermetrics/powermetrics_tool.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/simulation_file.h"
#include "unit/adapters/simulated/recordings/recording_folder.h"

namespace pallimo::tools::powermetrics {
namespace {

using adapters::libplist::LibplistReader;
using adapters::simulated::RecordingFolder;
using adapters::simulated::Simulation;
using Words = std::vector<std::string>;

constexpr double kStart = 1'790'000'000;

const Words kWholeSample{"-n", "1",     "-i",         "1000",
                         "-f", "plist", "--samplers", "cpu_power,gpu_power,ane_power"};

/// The tool in a process that only the test knows.
class PowermetricsTool : public ::testing::Test {
 protected:
  PowermetricsTool() { simulate({.machine = "MacBook Pro M2 Pro", .recording = ""}); }

  void simulate(const Simulation& simulation) {
    const std::string path = folder_.pathOf("simulation.json");
    ASSERT_EQ(writeSimulation(path, simulation), "");
    environment_ = {{"PALLIMO_SIMULATION", path}, {"PALLIMO_REQUEST", "1"}};
  }

  void simulateRecording(double speed = 1) {
    folder_.write("1.plist", std::string("first\0\n", 7));
    folder_.write("empty.plist", "");
    folder_.write("machine.json", R"({"format": 1, "name": "x", "sysctl": {},
        "steps": [{"powermetrics": "1.plist"}, {"powermetrics": null},
                  {"powermetrics": "empty.plist"}]})");
    simulate({.machine = "", .recording = folder_.path(), .seed = 1, .speed = speed});
  }

  int run(const Words& arguments = kWholeSample) {
    return runPowermetrics(
        arguments, {.environment =
                        [this](const char* name) {
                          const auto found = environment_.find(name);
                          return found == environment_.end()
                                     ? std::nullopt
                                     : std::optional<std::string>(found->second);
                        },
                    .now = [this] { return now_; },
                    .wait =
                        [this](std::chrono::duration<double> duration) {
                          waited_.push_back(duration.count());
                          now_ += duration.count();
                          return readerStays_;
                        },
                    .write =
                        [this](const base::Bytes& bytes) {
                          output_.append(bytes.begin(), bytes.end());
                          return readerStays_;
                        },
                    .writeError = [this](std::string_view line) { errors_.emplace_back(line); }});
  }

  int runRequest(const std::string& number) {
    environment_["PALLIMO_REQUEST"] = number;
    return run();
  }

  RecordingFolder folder_;
  std::map<std::string, std::string> environment_;
  double now_ = kStart;
  bool readerStays_ = true;
  std::vector<double> waited_;
  std::string output_;
  Words errors_;
};

TEST_F(PowermetricsTool, PrintsTheDocumentOfTheBuiltInMachine) {
  EXPECT_EQ(run(), 0);
  const base::Bytes bytes(output_.begin(), output_.end());
  const auto document = LibplistReader().read(bytes);
  ASSERT_TRUE(document);
  EXPECT_NE(document->find("processor"), nullptr);
  EXPECT_NE(document->find("gpu"), nullptr);
  EXPECT_EQ(errors_, Words{});
}

TEST_F(PowermetricsTool, WaitsThePeriodOnce) {
  run();
  EXPECT_EQ(waited_, std::vector<double>{1});
}

TEST_F(PowermetricsTool, WaitsLessAtAHigherSpeed) {
  simulate({.machine = "MacBook Pro M2 Pro", .recording = "", .seed = 1, .speed = 20});
  run();
  EXPECT_EQ(waited_, std::vector<double>{0.05});
}

TEST_F(PowermetricsTool, FiguresStayThoseOfTheNominalPeriod) {
  const auto elapsed = [this](double speed) {
    output_.clear();
    simulate({.machine = "MacBook Pro M2 Pro", .recording = "", .seed = 1, .speed = speed});
    run();
    const base::Bytes bytes(output_.begin(), output_.end());
    return LibplistReader().read(bytes)->find("elapsed_ns")->numberOr(0);
  };
  EXPECT_NEAR(elapsed(1), 1.01e9, 0.01e9);
  EXPECT_NEAR(elapsed(100), 1.01e9, 0.01e9);
}

TEST_F(PowermetricsTool, TheDocumentBelongsToTheEndOfTheWait) {
  simulate({.machine = "MacBook Pro M2 Pro",
            .recording = "",
            .seed = 1,
            .speed = 8,
            .startTime = kStart - 5});
  run();
  // 5.125 seconds after the start, eight times as fast.
  EXPECT_NE(output_.find("<date>2026-09-21T14:13:56Z</date>"), std::string::npos)
      << output_.substr(output_.find("<date>"), 40);
}

TEST_F(PowermetricsTool, PrintsOnlyTheSamplersThatItWasAskedFor) {
  EXPECT_EQ(run({"-n", "1", "-f", "plist", "--samplers", "gpu_power"}), 0);
  EXPECT_EQ(output_.find("<key>processor</key>"), std::string::npos);
  EXPECT_NE(output_.find("<key>gpu</key>"), std::string::npos);
}

TEST_F(PowermetricsTool, RefusesAnUnknownSamplerAtOnce) {
  EXPECT_EQ(run({"-n", "1", "-f", "plist", "--samplers", "cpu_power,bandwidth"}), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: unrecognized sampler: bandwidth"});
  EXPECT_EQ(output_, "");
  EXPECT_EQ(waited_, std::vector<double>{});
}

TEST_F(PowermetricsTool, SaysHowItIsUsed) {
  EXPECT_EQ(run({"--version"}), 64);
  EXPECT_EQ(errors_,
            Words{"usage: powermetrics -n 1 [-i milliseconds] -f plist --samplers name[,name...]"});
  EXPECT_EQ(output_, "");
}

TEST_F(PowermetricsTool, SaysThatItIsNotTheSystemsOwn) {
  environment_.clear();
  EXPECT_EQ(run({"--help"}), 0);
  EXPECT_NE(output_.find("Stands where the system's powermetrics stands on a Mac"),
            std::string::npos);
  EXPECT_NE(output_.find("It measures nothing."), std::string::npos);
  EXPECT_EQ(errors_, Words{});
  EXPECT_EQ(run({"--help", "--help"}), 64);
}

TEST_F(PowermetricsTool, FailsWhenNobodyReadsItsHelp) {
  readerStays_ = false;
  EXPECT_EQ(run({"--help"}), 1);
}

TEST_F(PowermetricsTool, PrintsNothingWhenItsReaderHasGoneWhileItWaited) {
  readerStays_ = false;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(output_, "");
  EXPECT_EQ(errors_, Words{});
}

TEST_F(PowermetricsTool, NeedsToKnowWhatIsSimulated) {
  environment_.erase("PALLIMO_SIMULATION");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: PALLIMO_SIMULATION is not set"});
}

TEST_F(PowermetricsTool, NeedsAFileThatCanBeRead) {
  environment_["PALLIMO_SIMULATION"] = "/nonexistent/simulation.json";
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: /nonexistent/simulation.json: expected a readable file, "
                           "got: No such file or directory"});
}

TEST_F(PowermetricsTool, NeedsAFileThatIsWhole) {
  folder_.write("simulation.json", "{\"format\": 1");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: " + folder_.pathOf("simulation.json") +
                           ": line 1, column 13: expected JSON, got something else"});
}

TEST_F(PowermetricsTool, NeedsAMachineThatExists) {
  simulate({.machine = "Cray-1", .recording = ""});
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: no machine is named \"Cray-1\""});
}

TEST_F(PowermetricsTool, NeedsTheRequestsNumber) {
  environment_.erase("PALLIMO_REQUEST");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: PALLIMO_REQUEST is not set"});
}

TEST_F(PowermetricsTool, CountsRequestsFromOne) {
  for (const char* number : {"0", "-1", "", "one", "1x", "99999999999999999999"}) {
    errors_.clear();
    EXPECT_EQ(runRequest(number), 1) << number;
    EXPECT_EQ(errors_, Words{"powermetrics: PALLIMO_REQUEST is not a number from 1"}) << number;
  }
}

TEST_F(PowermetricsTool, PrintsTheBytesOfTheRequestsStepVerbatim) {
  simulateRecording();
  EXPECT_EQ(runRequest("1"), 0);
  EXPECT_EQ(output_, std::string("first\0\n", 7));
  EXPECT_EQ(runRequest("4"), 0);
  EXPECT_EQ(output_.size(), 14u);
}

TEST_F(PowermetricsTool, FailsWithoutAWordWhereTheStepHasNoDocument) {
  simulateRecording();
  EXPECT_EQ(runRequest("2"), 1);
  EXPECT_EQ(output_, "");
  EXPECT_EQ(errors_, Words{});
}

TEST_F(PowermetricsTool, PrintsNothingAndSucceedsWhereTheFileIsEmpty) {
  simulateRecording();
  EXPECT_EQ(runRequest("3"), 0);
  EXPECT_EQ(output_, "");
  EXPECT_EQ(errors_, Words{});
}

TEST_F(PowermetricsTool, ARecordingTakesItsTimeToo) {
  simulateRecording(4);
  runRequest("1");
  runRequest("2");
  EXPECT_EQ(waited_, (std::vector<double>{0.25, 0.25}));
}

TEST_F(PowermetricsTool, ARecordingAnswersWhateverSamplersWereAskedFor) {
  simulateRecording();
  EXPECT_EQ(run({"-n", "1", "-f", "plist", "--samplers", "bandwidth"}), 0);
  EXPECT_EQ(output_, std::string("first\0\n", 7));
}

TEST_F(PowermetricsTool, ABrokenRecordingIsOneLine) {
  simulateRecording();
  folder_.write("machine.json", "[]");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(errors_, Words{"powermetrics: " + folder_.path() +
                           "/machine.json: expected an object, got an empty array"});
}

}  // namespace
}  // namespace pallimo::tools::powermetrics
