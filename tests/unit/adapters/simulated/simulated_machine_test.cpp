// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulated_machine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "adapters/simulated/machines/builtin_sensors.h"
#include "adapters/simulated/machines/displays_report.h"
#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/machines/powermetrics_document.h"
#include "fakes/fake_helper_connector.h"
#include "fakes/manual_clock.h"
#include "unit/adapters/simulated/recordings/recording_folder.h"

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
  return powermetricsDocument(*findMachine("MacBook Pro M2 Pro"), request);
}

std::string complaint(const Simulation& simulation) {
  const auto machine = SimulatedMachine::load(simulation);
  const auto* error = std::get_if<SimulationError>(&machine);
  return error == nullptr ? "none" : error->message;
}

constexpr fakes::ManualClock::TimePoint kStartPoint{std::chrono::seconds(1'790'000'000)};

const MachineDescription& builtinMachine() { return *findMachine("MacBook Pro M2 Pro"); }

/// A machine's sensors, a clock that shows the simulation's start, and a helper.
class SensorsOf {
 public:
  explicit SensorsOf(const SimulatedMachine& machine) {
    clock_.set(kStartPoint);
    sensors_ = machine.sensors(clock_);
    followed_ = sensors_->follow(helper_);
    connection_ = followed_->connect("com.ostrovane.powermetrics", 4096);
    connection_->setExportedObject(std::make_shared<Ignoring>());
  }

  SimulatedSensors* operator->() { return sensors_.get(); }
  void deliverResult(std::chrono::seconds later = {}) {
    clock_.advance(later);
    helper_.latest()->sendResult(std::nullopt);
  }
  std::optional<base::Bytes> report(const std::string& dataType) {
    return sensors_->programLauncher().run("/usr/sbin/system_profiler", {"-xml", dataType});
  }
  std::size_t acceleratorCount() {
    std::size_t count = 0;
    const auto walk = sensors_->accelerators().matchingServices("IOAccelerator");
    while (const std::uint32_t entry = sensors_->accelerators().next(walk.value_or(0))) {
      sensors_->accelerators().release(entry);
      ++count;
    }
    sensors_->accelerators().release(walk.value_or(0));
    return count;
  }

 private:
  class Ignoring final : public helper_link::protocol::ClientProtocol {
    void powermetricsResult(std::optional<base::Bytes>) override {}
  };

  fakes::ManualClock clock_;
  fakes::FakeHelperConnector helper_;
  std::unique_ptr<SimulatedSensors> sensors_;
  std::unique_ptr<ports::HelperConnector> followed_;
  std::shared_ptr<ports::HelperConnection> connection_;
};

std::optional<base::Bytes> textBytes(const std::string& text) {
  base::Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

TEST(SimulatedMachine, KnowsItsName) { EXPECT_EQ(builtin().name(), "MacBook Pro M2 Pro"); }

TEST(SimulatedMachine, AnswersKernelVariables) {
  EXPECT_EQ(builtin().systemControls()->bytes("hw.model"), textBytes("Mac14,9"));
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

TEST(SimulatedMachine, ItsSensorsBeginAtTimeZero) {
  SensorsOf sensors(builtin());
  EXPECT_EQ(sensors->processorTicks().read(), BuiltinSensors(builtinMachine(), 5).stepAt(0).ticks);
}

TEST(SimulatedMachine, ItsSensorsShowTheMomentOfTheLastResult) {
  SensorsOf sensors(builtin());
  sensors.deliverResult(std::chrono::seconds(12));
  EXPECT_EQ(sensors->processorTicks().read(), BuiltinSensors(builtinMachine(), 5).stepAt(12).ticks);
}

TEST(SimulatedMachine, ItsSensorsTakeTheTimeFromAClockThatIsAlreadyFast) {
  SensorsOf sensors(builtin(20));
  sensors.deliverResult(std::chrono::seconds(12));
  EXPECT_EQ(sensors->processorTicks().read(), BuiltinSensors(builtinMachine(), 5).stepAt(12).ticks);
}

TEST(SimulatedMachine, HasItsOwnSmc) {
  SensorsOf sensors(builtin());
  const auto handle = sensors->smcDevice().open();
  ASSERT_NE(handle, std::nullopt);
  ports::SMCRequestRecord input;
  input.data8 = 8;
  ports::SMCRequestRecord output;
  EXPECT_EQ(sensors->smcDevice().callStructMethod(*handle, 2, input, output), 0);
  EXPECT_EQ(output.key, 0x234B4559u);  // "#KEY"
}

TEST(SimulatedMachine, ReportsItsDisplaysAndNothingElse) {
  SensorsOf sensors(builtin());
  EXPECT_EQ(sensors.report("SPDisplaysDataType"), displaysReport(builtinMachine()));
  EXPECT_EQ(sensors.report("SPHardwareDataType"), std::nullopt);
}

class RecordedMachine : public ::testing::Test {
 protected:
  RecordedMachine() {
    folder_.write("1.plist", "first");
    folder_.write("empty.plist", "");
    folder_.write("displays.plist", "report");
    folder_.write("machine.json", R"({"format": 1, "name": "Recorded",
        "sysctl": {"hw.model": "Mac99,9", "hw.cputype": 7},
        "system_profiler": {"SPDisplaysDataType": "displays.plist"},
        "steps": [{"powermetrics": "1.plist", "ticks": [[1, 0, 0, 0]], "accelerators": [{}, {}]},
                  {},
                  {"powermetrics": "empty.plist", "ticks": [[3, 0, 0, 0]]}]})");
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
  EXPECT_EQ(loaded(simulation()).systemControls()->bytes("hw.model"), textBytes("Mac99,9"));
  EXPECT_EQ(loaded(simulation()).systemControls()->bytes("hw.cputype"), (base::Bytes{7, 0, 0, 0}));
  EXPECT_EQ(loaded(simulation()).systemControls()->bytes("hw.ncpu"), std::nullopt);
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

TEST_F(RecordedMachine, SaysWhenAFileHasGrownTooLargeMeanwhile) {
  const SimulatedMachine machine = loaded(simulation());
  std::filesystem::resize_file(folder_.pathOf("1.plist"), 67'108'865);
  const PowermetricsRun run = machine.powermetrics(requestAt(kStart));
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.output.empty());
  EXPECT_EQ(run.error, "powermetrics: 1.plist: Larger than 67108864 bytes");
}

TEST_F(RecordedMachine, NamesAFileOfAnyNameOnOneLine) {
  folder_.write("a\nb.plist", "x");
  folder_.write("machine.json", R"({"format": 1, "name": "x", "sysctl": {},
                                    "steps": [{"powermetrics": "a\nb.plist"}]})");
  const SimulatedMachine machine = loaded(simulation());
  std::filesystem::remove(folder_.pathOf("a\nb.plist"));
  EXPECT_EQ(machine.powermetrics(requestAt(kStart)).error,
            "powermetrics: a\\nb.plist: No such file or directory");
}

TEST_F(RecordedMachine, GivesTheSameBytesWhateverSamplersWereAskedFor) {
  PowermetricsRequest request = requestAt(kStart);
  request.samplers = {"bandwidth"};
  EXPECT_EQ(loaded(simulation()).whyRefused(request.samplers), "");
  EXPECT_EQ(loaded(simulation()).powermetrics(request).output, run(1).output);
}

TEST_F(RecordedMachine, ItsSensorsAnswerWithTheStepOfTheLastResult) {
  using Counts = std::vector<ports::ProcessorTickCounts>;
  SensorsOf sensors(loaded(simulation()));
  EXPECT_EQ(sensors->processorTicks().read(), (Counts{{1, 0, 0, 0}}));
  sensors.deliverResult();
  EXPECT_EQ(sensors->processorTicks().read(), (Counts{{1, 0, 0, 0}}));
  sensors.deliverResult();
  EXPECT_EQ(sensors->processorTicks().read(), std::nullopt);
  sensors.deliverResult();
  EXPECT_EQ(sensors->processorTicks().read(), (Counts{{3, 0, 0, 0}}));
}

TEST_F(RecordedMachine, HasTheAcceleratorsThatWereRecorded) {
  EXPECT_EQ(SensorsOf(loaded(simulation())).acceleratorCount(), 2u);
}

TEST_F(RecordedMachine, HasNoSmcThatNobodyRecorded) {
  EXPECT_EQ(SensorsOf(loaded(simulation()))->smcDevice().open(), std::nullopt);
}

TEST_F(RecordedMachine, GivesTheReportsThatWereRecorded) {
  SensorsOf sensors(loaded(simulation()));
  EXPECT_EQ(sensors.report("SPDisplaysDataType"), (base::Bytes{'r', 'e', 'p', 'o', 'r', 't'}));
  EXPECT_EQ(sensors.report("SPHardwareDataType"), std::nullopt);
}

TEST_F(RecordedMachine, GivesADocumentVerbatimWhenTheGpuWasNotAskedFor) {
  const std::string document = "<plist><dict><key>gpu</key><dict/></dict></plist>\r\n";
  folder_.write("1.plist", document);
  PowermetricsRequest request = requestAt(kStart);
  request.samplers = {"cpu_power", "ane_power"};
  EXPECT_EQ(loaded(simulation()).powermetrics(request).output,
            base::Bytes(document.begin(), document.end()));
}

TEST_F(RecordedMachine, APathOfAnyNameIsOneLine) {
  Simulation gone = simulation();
  gone.recording += "/a\nb\x1b";
  EXPECT_EQ(complaint(gone),
            folder_.path() +
                "/a\\nb\\u001b/machine.json: expected a readable file, got: No such file or "
                "directory");
}

TEST_F(RecordedMachine, ABrokenRecordingIsRefusedWithItsPath) {
  folder_.write("machine.json", "{}");
  EXPECT_EQ(complaint(simulation()),
            folder_.path() + "/machine.json: format: expected 1, got nothing");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
