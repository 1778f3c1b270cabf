// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "allocations/counted_memory.h"
#include "app/headless/headless_run.h"
#include "app/served_metrics.h"
#include "app/window_content.h"
#include "fakes/fake_platform.h"
#include "fakes/recording_output.h"
#include "logging/log_rows.h"
#include "modules/metric_history.h"
#include "scenarios/sample_document.h"

namespace pallimo::soak {
namespace {

using namespace std::chrono_literals;

constexpr int kSamplesADay = 86'400;

/// What `make` leaves behind in memory, while its result lives.
template <typename Make>
std::int64_t bytesOf(Make make) {
  const std::int64_t before = allocations::liveBytes();
  const auto made = make();
  return allocations::liveBytes() - before;
}

/// The one history without a limit, that of the neural engine's power, all by itself.
std::int64_t bytesOfUnboundedHistory(int values) {
  return bytesOf([values] {
    modules::MetricHistory history(modules::MetricHistory::kUnbounded);
    for (int value = 0; value < values; ++value) history.insert(value);
    return history;
  });
}

/// A log's rows all by themselves.
std::int64_t bytesOfRows(int rows) {
  return bytesOf([rows] {
    logging::LogRows log;
    for (int row = 0; row < rows; ++row) log.append({}, {});
    return log;
  });
}

/// The app with the contents of its window, without its pixels, in a memory that is counted. The
/// test is the helper, the user and the clock.
class AppMemory : public testing::Test {
 protected:
  /// Whole chunks of every queue and history of every library: after so many samples each of them
  /// stands in its chunk where it stood before.
  static constexpr int kLap = 512;
  /// Longer than anything that is bounded: the graphs' 350 points, a snapshot's 512 values.
  static constexpr int kWarmUp = 2 * kLap;
  /// Half an hour. What is the same to the byte then is the same after a day.
  static constexpr int kLong = 4 * kLap;

  AppMemory() {
    platform_.clock.set(std::chrono::system_clock::time_point(1772715753123ms));
    platform_.backgroundQueue.runAtOnce();
    for (const char* key : {"Tp01", "Tp05", "Tg05"}) platform_.smcDevice.setFloat(key, 50);
    platform_.processorTicks.set({{100, 100, 100, 0}, {100, 100, 100, 0}});
    platform_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 37));
    platform_.defaults.setBool("gpuFrequency", true);
    EXPECT_EQ(served_.listen(platform_.platform(), {"127.0.0.1", 9123}), std::nullopt);
    general_.emplace(platform_.platform());
    served_.follow(platform_.platform(), *general_);
    view_.emplace(queue(), *general_);
    queue().run();
    helper().replyIsResponding(true);
    helper().replyVersion("1.0");
    queue().run();
  }
  ~AppMemory() override { queue().run(); }

  fakes::ManualMainQueue& queue() { return platform_.mainQueue; }
  fakes::FakeHelperConnection& helper() { return *platform_.helperConnector.latest(); }

  /// So many seconds: each brings a sample, a new picture of the window and a scrape.
  void sampleFor(int seconds) {
    for (int second = 0; second < seconds; ++second) {
      platform_.processorTicks.advance({{10, 20, 70, 0}, {30, 20, 50, 0}});
      helper().sendResult(document_);
      queue().run();
      ASSERT_EQ(
          windowContent(*view_, *general_, platform_.defaults, platform_.desktop.randomNumbers)
              .panels.size(),
          4u);
      ASSERT_FALSE(platform_.desktop.metricsServer.scrape().empty());
      platform_.clock.advance(1s);
      queue().advance(1s);
      forgetWhatHappened();
    }
  }
  void log(bool isOn) {
    general_->logfileModel()->setLogEnabled(isOn);
    queue().run();
  }
  /// Another period clears the histories.
  void clearHistories() {
    period_ = period_ == 500 ? 1000 : 500;
    platform_.defaults.setDouble("samplingResolution", period_);
    queue().run();
  }

  /// What there is more of after a long time, the one history without a limit left out.
  std::int64_t growthWhile(const std::function<void()>& longTime) {
    const int first = samplesInHistory();
    const std::int64_t before = allocations::liveBytes();
    longTime();
    const int last = samplesInHistory();
    const std::int64_t grown = allocations::liveBytes() - before;
    return grown - (bytesOfUnboundedHistory(last) - bytesOfUnboundedHistory(first));
  }

  /// The doubles write down what they are asked.
  void forgetWhatHappened() {
    platform_.desktop.userNotifications.forget();
    platform_.desktop.files.forget();
    platform_.console.forget();
    platform_.helperConnector.journal().take();
    platform_.smcDevice.takeCalls();
    platform_.accelerators.takeCalls();
  }

  fakes::FakePlatform platform_;
  app::ServedMetrics served_{"1.2.3"};
  std::optional<app::GeneralModel> general_;
  std::optional<app::ContentView> view_;

 private:
  int samplesInHistory() const {
    return static_cast<int>(general_->modelPower()->snapshot()->historicANE.length);
  }

  const base::Bytes document_ = scenarios::bytesOf({});
  double period_ = 500;
};

TEST_F(AppMemory, GrowsByTheHistoryWithoutALimitAlone) {
  sampleFor(kWarmUp);
  EXPECT_EQ(growthWhile([this] { sampleFor(kLong); }), 0);
}

TEST_F(AppMemory, GrowsByTheRowsOfALogWhileThereIsOne) {
  log(true);
  sampleFor(kWarmUp);
  EXPECT_EQ(growthWhile([this] { sampleFor(kLong); }),
            bytesOfRows(kWarmUp + kLong) - bytesOfRows(kWarmUp));
}

TEST_F(AppMemory, IsGivenBackByLogsThatAreWritten) {
  const auto logOften = [this](int seconds) {
    for (int second = 0; second < seconds; second += 8) {
      log(true);
      sampleFor(8);
      log(false);
    }
    forgetWhatHappened();
  };
  logOften(kWarmUp);
  EXPECT_EQ(growthWhile([&] { logOften(kLong); }), 0);
}

TEST_F(AppMemory, IsGivenBackByHistoriesThatAreCleared) {
  const auto clearOften = [this](int laps) {
    for (int lap = 0; lap < laps; ++lap) {
      clearHistories();
      sampleFor(kLap);
    }
  };
  clearOften(2);
  EXPECT_EQ(growthWhile([&] { clearOften(kLong / kLap); }), 0);
}

TEST_F(AppMemory, StaysTheSameWhileResultsAreNoDocuments) {
  const auto sendRubbish = [this](int results) {
    for (int result = 0; result < results; ++result) {
      helper().sendResult(base::Bytes{'?'});
      helper().sendResult(std::nullopt);
      queue().run();
      forgetWhatHappened();
    }
  };
  sampleFor(kWarmUp);
  sendRubbish(kWarmUp);
  EXPECT_EQ(growthWhile([&] { sendRubbish(kLong); }), 0);
}

TEST_F(AppMemory, IsNotNeededForLinesThatArePrinted) {
  fakes::RecordingOutput output;
  app::HeadlessRun::Settings settings;
  settings.format = app::OutputFormat::json;
  const auto run =
      app::HeadlessRun::create({queue(), platform_.notifications, *general_, output}, settings,
                               [](const app::RunEnd& end) { FAIL() << end.message; });
  run->start();
  std::size_t lines = 0;
  const auto print = [&](int samples) {
    for (int sample = 0; sample < samples; ++sample) {
      sampleFor(1);
      lines += output.takeLines().size();
    }
  };
  print(kWarmUp);
  EXPECT_EQ(growthWhile([&] { print(kLong); }), 0);
  EXPECT_EQ(lines, static_cast<std::size_t>(kWarmUp + kLong));
}

TEST(MemoryOfADay, OfTheHistoryWithoutALimitIsLessThanAMegabyte) {
  EXPECT_LE(bytesOfUnboundedHistory(kSamplesADay), 1 << 20);
  EXPECT_LE(bytesOfUnboundedHistory(kSamplesADay), 9 * kSamplesADay);
}

TEST(MemoryOfADay, OfALogIsLessThanTwoHundredBytesARow) {
  EXPECT_LE(bytesOfRows(kSamplesADay), 200 * kSamplesADay);
}

}  // namespace
}  // namespace pallimo::soak
