// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulated_machine.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "adapters/simulated/machines.h"
#include "adapters/simulated/powermetrics_document.h"
#include "recording_folder.h"

namespace pallimo::adapters::simulated {
namespace {

constexpr double kStart = 1'790'000'000;

SimulatedMachine loaded(const Simulation& simulation) {
  auto machine = SimulatedMachine::load(simulation);
  if (const auto* error = std::get_if<SimulationError>(&machine)) {
    ADD_FAILURE() << error->message;
    std::abort();
  }
  return std::get<SimulatedMachine>(std::move(machine));
}

SimulatedMachine builtin(double speed = 1) {
  return loaded({.machine = "macbook pro m2 pro",
                 .recording = "",
                 .seed = 5,
                 .speed = speed,
                 .startTime = kStart});
}

PowermetricsRequest requestAt(double now) {
  return {.number = 1,
          .now = now,
          .period = std::chrono::milliseconds(1000),
          .samplers = {"cpu_power", "gpu_power", "ane_power"}};
}

/// The document of the built-in machine at a simulated time.
base::Bytes documentAt(double time) {
  DocumentRequest request;
  request.seed = 5;
  request.startTime = kStart;
  request.time = time;
  request.samplers = {.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = false};
  return powermetricsDocument(builtinMachines().front(), request);
}

std::string complaint(const Simulation& simulation) {
  const auto machine = SimulatedMachine::load(simulation);
  const auto* error = std::get_if<SimulationError>(&machine);
  return error == nullptr ? "none" : error->message;
}

TEST(SimulatedMachine, KnowsItsName) { EXPECT_EQ(builtin().name(), "MacBook Pro M2 Pro"); }

TEST(SimulatedMachine, AnswersKernelVariables) {
  EXPECT_EQ(builtin().systemControls()->text("hw.model"), "Mac14,9");
}

TEST(SimulatedMachine, PrintsTheDocumentOfTheMoment) {
  const PowermetricsRun run = builtin().powermetrics(requestAt(kStart + 12));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.output, documentAt(12));
}

TEST(SimulatedMachine, ItsClockRunsFasterWithTheSpeed) {
  EXPECT_EQ(builtin(20).powermetrics(requestAt(kStart + 12)).output, documentAt(240));
}

TEST(SimulatedMachine, ItsClockNeverStandsBeforeTheStart) {
  EXPECT_EQ(builtin(20).powermetrics(requestAt(kStart - 100)).output, documentAt(0));
}

TEST(SimulatedMachine, TheRequestsNumberDoesNotMatterToABuiltInMachine) {
  PowermetricsRequest request = requestAt(kStart + 12);
  request.number = 77;
  EXPECT_EQ(builtin().powermetrics(request).output, documentAt(12));
}

TEST(SimulatedMachine, RefusesAnUnknownSampler) {
  PowermetricsRequest request = requestAt(kStart);
  request.samplers = {"cpu_power", "bandwidth", "other"};
  const PowermetricsRun run = builtin().powermetrics(request);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "powermetrics: unrecognized sampler: bandwidth");
  EXPECT_TRUE(run.output.empty());
  EXPECT_EQ(builtin().whyRefused(request.samplers), run.error);
}

TEST(SimulatedMachine, AnUnknownNameIsRefused) {
  EXPECT_EQ(complaint({.machine = "Cray\n1", .recording = ""}), "no machine is named \"Cray\\n1\"");
}

class RecordedMachine : public ::testing::Test {
 protected:
  RecordedMachine() {
    folder_.write("1.plist", "first");
    folder_.write("empty.plist", "");
    folder_.write("machine.json", R"({"format": 1, "name": "Recorded",
        "sysctl": {"hw.model": "Mac99,9", "hw.cputype": 7},
        "steps": [{"powermetrics": "1.plist"}, {}, {"powermetrics": "empty.plist"}]})");
  }

  Simulation simulation() const { return {.machine = "", .recording = folder_.path()}; }
  PowermetricsRun run(std::uint64_t number) const {
    PowermetricsRequest request = requestAt(kStart);
    request.number = number;
    return loaded(simulation()).powermetrics(request);
  }

  RecordingFolder folder_;
};

TEST_F(RecordedMachine, IsWhatTheRecordingSays) {
  EXPECT_EQ(loaded(simulation()).name(), "Recorded");
  EXPECT_EQ(loaded(simulation()).systemControls()->text("hw.model"), "Mac99,9");
  EXPECT_EQ(loaded(simulation()).systemControls()->integer("hw.cputype"), 7);
  EXPECT_EQ(loaded(simulation()).systemControls()->integer("hw.ncpu"), std::nullopt);
}

TEST_F(RecordedMachine, PrintsTheStepsBytes) {
  EXPECT_EQ(run(1).output, (base::Bytes{'f', 'i', 'r', 's', 't'}));
  EXPECT_EQ(run(1).status, 0);
  EXPECT_EQ(run(4).output, run(1).output);
}

TEST_F(RecordedMachine, FailsWithoutAWordWhereTheStepHasNoDocument) {
  EXPECT_EQ(run(2).status, 1);
  EXPECT_TRUE(run(2).output.empty());
  EXPECT_EQ(run(2).error, "");
}

TEST_F(RecordedMachine, PrintsNothingFromAnEmptyFile) {
  EXPECT_EQ(run(3).status, 0);
  EXPECT_TRUE(run(3).output.empty());
  EXPECT_EQ(run(3).error, "");
}

TEST_F(RecordedMachine, SaysWhenAFileHasGoneMeanwhile) {
  const SimulatedMachine machine = loaded(simulation());
  std::filesystem::remove(folder_.pathOf("1.plist"));
  const PowermetricsRun run = machine.powermetrics(requestAt(kStart));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "powermetrics: 1.plist: No such file or directory");
}

TEST_F(RecordedMachine, GivesTheSameBytesWhateverSamplersWereAskedFor) {
  PowermetricsRequest request = requestAt(kStart);
  request.samplers = {"bandwidth"};
  EXPECT_EQ(loaded(simulation()).whyRefused(request.samplers), "");
  EXPECT_EQ(loaded(simulation()).powermetrics(request).output, run(1).output);
}

TEST_F(RecordedMachine, ABrokenRecordingIsRefusedWithItsPath) {
  folder_.write("machine.json", "{}");
  EXPECT_EQ(complaint(simulation()),
            folder_.path() + "/machine.json: format: expected 1, got nothing");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
