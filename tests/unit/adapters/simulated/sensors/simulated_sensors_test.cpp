// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_sensors.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "base/four_char_code.h"
#include "fakes/fake_helper_connector.h"
#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

using std::chrono::seconds;

constexpr const char* kName = "com.ostrovane.powermetrics";

/// A step in which every sensor shows `number`.
RecordingStep stepShowing(std::uint8_t number) {
  RecordedAccelerator accelerator;
  accelerator.model = base::PropertyList(std::int64_t{number});
  RecordingStep step = stepWithTicks({{number, 0, 0, 0}});
  step.smc.emplace("Te05", smcValue({number}));
  step.hid.emplace(1, HidReading{number, number});
  step.accelerators.emplace(1, accelerator);
  return step;
}

RecordedSmc smcWithOneKey() {
  RecordedSmc smc;
  smc.isAvailable = true;
  smc.keyCount = 1;
  smc.keys.push_back({.key = "Te05", .type = "flt ", .size = 4, .bytes = {}});
  return smc;
}

std::optional<base::Bytes> reportNamedAfterItsType(const std::string& dataType) {
  return base::Bytes(dataType.begin(), dataType.end());
}

int smcFigure(ports::SmcDevice& device) {
  const std::uint32_t handle = device.open().value();
  ports::SMCRequestRecord input;
  input.key = base::encodeFourCharCode("Te05");
  input.data8 = static_cast<std::uint8_t>(ports::SMCCommand::readBytes);
  ports::SMCRequestRecord output;
  const std::int32_t result = device.callStructMethod(handle, ports::kSMCSelector, input, output);
  device.close(handle);
  return result == 0 ? output.bytes[0] : -1;
}

int hidFigure(ports::HidSensors& hid) {
  const std::vector<ports::HidMatch> matching{{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 5}};
  const auto client = hid.createClient();
  client->setMatching(matching);
  if (client->copyServices() != 1u) return -1;
  return static_cast<int>(client->eventFloat(0, 15, 15 << 16).value_or(-1));
}

int acceleratorFigure(ports::AcceleratorRegistry& registry) {
  const std::uint32_t walk = registry.matchingServices("IOAccelerator").value();
  const std::uint32_t entry = registry.next(walk);
  const auto properties = registry.properties(entry);
  registry.release(entry);
  registry.release(walk);
  return static_cast<int>(properties->find("model")->numberOr(-1));
}

/// What each sensor shows, in one row.
std::vector<int> figures(SimulatedSensors& sensors) {
  return {smcFigure(sensors.smcDevice()), hidFigure(sensors.hidSensors()),
          acceleratorFigure(sensors.accelerators()),
          static_cast<int>(sensors.processorTicks().read()->front()[0])};
}

std::vector<int> allShow(int number) { return {number, number, number, number}; }

/// Reads all sensors while it takes a result in, as the app does.
class ReadingClient final : public helper_link::protocol::ClientProtocol {
 public:
  explicit ReadingClient(SimulatedSensors& sensors) : sensors_(sensors) {}

  void powermetricsResult(std::optional<base::Bytes>) override { seen_ = figures(sensors_); }
  const std::vector<int>& seen() const { return seen_; }

 private:
  SimulatedSensors& sensors_;
  std::vector<int> seen_;
};

class SimulatedSensorsTest : public ::testing::Test {
 protected:
  SimulatedSensors::Parts parts() const {
    const auto recording =
        MovableSteps::recordingOf({stepShowing(1), stepShowing(2), stepShowing(3)});
    return {smcWithOneKey(), recordedSteps(recording), reportNamedAfterItsType, 0};
  }

  void connect() {
    connection_ = followed_->connect(kName, 4096);
    connection_->setExportedObject(client_);
  }
  /// What the app reads while it takes the next result in.
  std::vector<int> nextResult(std::optional<base::Bytes> document = base::Bytes{1}) {
    inner_.latest()->sendResult(std::move(document));
    return client_->seen();
  }

  fakes::ManualClock clock_;
  fakes::FakeHelperConnector inner_;
  SimulatedSensors sensors_{parts(), clock_};
  std::unique_ptr<ports::HelperConnector> followed_ = sensors_.follow(inner_);
  std::shared_ptr<ReadingClient> client_ = std::make_shared<ReadingClient>(sensors_);
  std::shared_ptr<ports::HelperConnection> connection_;
};

TEST_F(SimulatedSensorsTest, StartUpReadsTheFirstStep) { EXPECT_EQ(figures(sensors_), allShow(1)); }

TEST_F(SimulatedSensorsTest, TheNthResultShowsStepNToTheAppThatTakesItIn) {
  connect();
  EXPECT_EQ(nextResult(), allShow(1));
  EXPECT_EQ(nextResult(), allShow(2));
  EXPECT_EQ(nextResult(), allShow(3));
}

TEST_F(SimulatedSensorsTest, ResultsWithoutBytesCount) {
  connect();
  nextResult(std::nullopt);
  nextResult(std::nullopt);
  EXPECT_EQ(nextResult(), allShow(3));
}

TEST_F(SimulatedSensorsTest, AfterTheLastStepTheFirstComesAgain) {
  connect();
  for (int i = 0; i < 3; ++i) nextResult();
  EXPECT_EQ(nextResult(), allShow(1));
  EXPECT_EQ(nextResult(), allShow(2));
}

TEST_F(SimulatedSensorsTest, ANewConnectionBeginsAtTheFirstStep) {
  connect();
  nextResult();
  nextResult();
  connect();
  EXPECT_EQ(nextResult(), allShow(1));
  EXPECT_EQ(nextResult(), allShow(2));
}

TEST_F(SimulatedSensorsTest, MakingAConnectionMovesNothing) {
  connect();
  nextResult();
  nextResult();
  connect();
  EXPECT_EQ(figures(sensors_), allShow(2));
}

TEST_F(SimulatedSensorsTest, TheMomentStandsStillBetweenResults) {
  connect();
  nextResult();
  nextResult();
  clock_.advance(seconds(60));
  EXPECT_EQ(figures(sensors_), allShow(2));
  EXPECT_EQ(figures(sensors_), allShow(2));
}

TEST_F(SimulatedSensorsTest, TheProfilerGivesTheMachinesReports) {
  const std::string type = "SPDisplaysDataType";
  EXPECT_EQ(sensors_.programLauncher().run("/usr/sbin/system_profiler", {"-xml", type}),
            base::Bytes(type.begin(), type.end()));
}

TEST_F(SimulatedSensorsTest, FollowedConnectionsMayOutliveTheSensors) {
  auto sensors = std::make_unique<SimulatedSensors>(parts(), clock_);
  const auto followed = sensors->follow(inner_);
  const auto connection = followed->connect(kName, 4096);
  connection->setExportedObject(client_);
  sensors.reset();
  EXPECT_EQ(nextResult(), allShow(1));
}

/// Shows its own time in the ticks.
class TimeSource final : public StepSource {
 public:
  std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) override {
    return std::make_shared<const RecordingStep>(
        stepShowing(static_cast<std::uint8_t>(moment.time)));
  }
};

TEST(SimulatedSensorsTime, IsTheClocksSinceTheStartWhenTheResultArrives) {
  fakes::ManualClock clock;
  clock.advance(seconds(1'000));
  SimulatedSensors sensors({smcWithOneKey(), std::make_unique<TimeSource>(), nullptr, 1'000},
                           clock);
  fakes::FakeHelperConnector inner;
  const auto followed = sensors.follow(inner);
  const auto client = std::make_shared<ReadingClient>(sensors);
  const auto connection = followed->connect(kName, 4096);
  connection->setExportedObject(client);
  clock.advance(seconds(12));
  EXPECT_EQ(figures(sensors), allShow(0));
  inner.latest()->sendResult(std::nullopt);
  EXPECT_EQ(client->seen(), allShow(12));
}

TEST_F(SimulatedSensorsTest, StartUpMayReadOnOneThreadWhileResultsArriveOnAnother) {
  constexpr int kResults = 600;
  std::atomic<bool> isOver = false;
  std::atomic<int> broken = 0;
  connect();
  std::thread reader([&] {
    // The SMC's caller is the delivery thread here: the device serves one at a time.
    do {
      const int hid = hidFigure(sensors_.hidSensors());
      const int accelerator = acceleratorFigure(sensors_.accelerators());
      const auto ticks = sensors_.processorTicks().read();
      if (hid < 1 || accelerator < 1 || !ticks) ++broken;
    } while (!isOver);
  });
  int wrong = 0;
  for (int result = 0; result < kResults; ++result) {
    if (nextResult() != allShow(1 + result % 3)) ++wrong;
  }
  isOver = true;
  reader.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(broken, 0);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
