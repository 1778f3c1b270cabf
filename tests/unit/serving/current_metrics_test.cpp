// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/current_metrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "fakes/fake_sampling_gate.h"
#include "unit/serving/series_text.h"

namespace pallimo::serving {
namespace {

using namespace std::chrono_literals;
using tests::holdsSeries;
using tests::seriesText;

/// All of its powers are that many watts.
ServedSample drawing(double watts, std::chrono::milliseconds time = 1772715753123ms) {
  ServedSample sample;
  sample.row.time = std::chrono::system_clock::time_point(time);
  sample.row.pkgPower = sample.row.cpuPower = sample.row.gpuPower = watts;
  sample.measured.pkgPower = sample.measured.cpuPower = sample.measured.gpuPower = true;
  return sample;
}

class CurrentMetricsTest : public testing::Test {
 protected:
  bool tells(const std::string& series) const {
    return holdsSeries(metrics_.families(), series + "\n");
  }

  CurrentMetrics metrics_{"1.2.3"};
};

TEST_F(CurrentMetricsTest, BeginsWithoutFigures) {
  EXPECT_EQ(seriesText(metrics_.families()), R"(pallimo_build_info{version="1.2.3"} 1
pallimo_helper_up 0
pallimo_samples_total 0
)");
}

TEST_F(CurrentMetricsTest, TellsTheLastSample) {
  metrics_.take(drawing(5));
  metrics_.take(drawing(6, 1772715754999ms));
  EXPECT_TRUE(tells("pallimo_power_watts{domain=\"package\"} 6"));
  EXPECT_TRUE(tells("pallimo_samples_total 2"));
  EXPECT_TRUE(tells("pallimo_last_sample_timestamp_seconds 1772715754.999"));
}

TEST_F(CurrentMetricsTest, TheTimeIsThatOfALineOfJson) {
  ServedSample sample = drawing(5);
  sample.row.time += std::chrono::duration_cast<std::chrono::system_clock::duration>(999us);
  metrics_.take(sample);
  EXPECT_TRUE(tells("pallimo_last_sample_timestamp_seconds 1772715753.123"));
}

TEST_F(CurrentMetricsTest, ClearedItHasNoFiguresButStillCounts) {
  metrics_.take(drawing(5));
  metrics_.clear();
  EXPECT_FALSE(holdsSeries(metrics_.families(), "pallimo_power_watts"));
  EXPECT_TRUE(tells("pallimo_samples_total 1"));
  EXPECT_TRUE(tells("pallimo_last_sample_timestamp_seconds 1772715753.123"));
  metrics_.take(drawing(6));
  EXPECT_TRUE(tells("pallimo_power_watts{domain=\"package\"} 6"));
  EXPECT_TRUE(tells("pallimo_samples_total 2"));
}

TEST_F(CurrentMetricsTest, TheHelperIsUpWhileItMayBeAsked) {
  const auto gate = std::make_shared<fakes::FakeSamplingGate>();
  metrics_.setMachine({}, gate);
  gate->setAuthorized(false);
  EXPECT_TRUE(tells("pallimo_helper_up 0"));
  gate->setAuthorized(true);
  EXPECT_TRUE(tells("pallimo_helper_up 1"));
  gate->setRequestedToUninstall(true);
  EXPECT_TRUE(tells("pallimo_helper_up 0"));
}

TEST_F(CurrentMetricsTest, AManagerThatIsGoneHasNoHelper) {
  auto gate = std::make_shared<fakes::FakeSamplingGate>();
  gate->setAuthorized(true);
  metrics_.setMachine({}, gate);
  gate.reset();
  EXPECT_TRUE(tells("pallimo_helper_up 0"));
}

/// Takes samples on a thread of its own, one after the other until the test has seen enough.
class Delivery {
 public:
  explicit Delivery(CurrentMetrics& metrics)
      : thread_([this, &metrics] {
          for (int sample = 0; !isOver_; ++sample) metrics.take(drawing(sample % 7));
        }) {}
  ~Delivery() {
    isOver_ = true;
    thread_.join();
  }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;  // uses the member above
};

const ports::MetricFamily* familyOf(const ports::MetricFamilies& families, const char* name) {
  const auto found =
      std::find_if(families.begin(), families.end(),
                   [&](const ports::MetricFamily& family) { return family.name == name; });
  return found == families.end() ? nullptr : &*found;
}

TEST_F(CurrentMetricsTest, NoScrapeSeesHalfOfASample) {
  const Delivery delivery(metrics_);
  // As many different scrapes as make a torn one likely.
  double last = 0;
  for (int changes = 0; changes < 500;) {
    const ports::MetricFamilies families = metrics_.families();
    const double samples = familyOf(families, "pallimo_samples_total")->series.front().value;
    if (samples == last) continue;
    last = samples;
    ++changes;
    const ports::MetricFamily* power = familyOf(families, "pallimo_power_watts");
    ASSERT_NE(power, nullptr);
    ASSERT_EQ(power->series.size(), 3u);
    // The figure is that of the sample which is counted last.
    const double watts = static_cast<int>(samples - 1) % 7;
    for (const auto& series : power->series) ASSERT_EQ(series.value, watts);
  }
}

/// A manager that a scrape asks, and which does not answer until the test lets it.
class SlowGate final : public helper_link::SamplingGate {
 public:
  bool isAuthorized() const override {
    isAsked_.set_value();
    mayAnswer_.get_future().wait();
    return true;
  }
  bool isRequestedToUninstall() const override { return false; }
  void requestPowermetrics(bool, double) override {}

  void waitUntilAsked() const { isAsked_.get_future().wait(); }
  void answer() const { mayAnswer_.set_value(); }

 private:
  mutable std::promise<void> isAsked_;
  mutable std::promise<void> mayAnswer_;
};

TEST_F(CurrentMetricsTest, AScrapeThatTakesLongSlowsNoSample) {
  const auto gate = std::make_shared<SlowGate>();
  metrics_.setMachine({}, gate);
  metrics_.take(drawing(5));
  auto scrape = std::async(std::launch::async, [this] { return metrics_.families(); });
  gate->waitUntilAsked();
  // Neither returned if the scrape held them up.
  metrics_.take(drawing(6));
  metrics_.clear();
  gate->answer();
  // It tells of the moment in which it was asked.
  EXPECT_TRUE(holdsSeries(scrape.get(), "pallimo_power_watts{domain=\"package\"} 5\n"));
}

}  // namespace
}  // namespace pallimo::serving
