// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/current_metrics.h"

#include <gtest/gtest.h>

#include <chrono>
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

TEST_F(CurrentMetricsTest, NoScrapeSeesHalfOfASample) {
  std::thread delivery([this] {
    for (int sample = 0; sample < 2000; ++sample) metrics_.take(drawing(sample % 7));
  });
  for (int scrape = 0; scrape < 500; ++scrape) {
    for (const ports::MetricFamily& family : metrics_.families()) {
      if (family.name != "pallimo_power_watts") continue;
      ASSERT_EQ(family.series.size(), 3u);
      EXPECT_EQ(family.series[0].value, family.series[1].value);
      EXPECT_EQ(family.series[0].value, family.series[2].value);
    }
  }
  delivery.join();
  EXPECT_TRUE(tells("pallimo_samples_total 2000"));
}

}  // namespace
}  // namespace pallimo::serving
