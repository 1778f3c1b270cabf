// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/served_metrics.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "fakes/fake_platform.h"
#include "scenarios/sample_document.h"
#include "unit/serving/series_text.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using scenarios::SampleDocument;

/// A model that serves; the test is the helper and who scrapes.
class ServedMetricsTest : public testing::Test {
 protected:
  ServedMetricsTest() {
    platform_.clock.set(std::chrono::system_clock::time_point(1772715753123ms));
    platform_.systemControls.setInteger("hw.perflevel0.logicalcpu", 8);
  }
  ~ServedMetricsTest() override { platform_.mainQueue.run(); }

  void start() {
    makeModel();
    follow();
  }
  void makeModel() {
    ASSERT_EQ(served_.listen(platform_.platform(), {"127.0.0.1", 9123}), std::nullopt);
    general_.emplace(platform_.platform());
  }
  void follow() {
    served_.follow(platform_.platform(), *general_);
    platform_.notifications.post(base::notification::kXPCDidInstall);
    platform_.mainQueue.run();
  }
  void helperSends(const SampleDocument& sample) { helperSends(scenarios::bytesOf(sample)); }
  void helperSends(const base::Bytes& document) {
    general_->modelPowerMetrics()->handleResult(document);
    platform_.mainQueue.run();
  }
  std::string scraped() const {
    return tests::seriesText(platform_.desktop.metricsServer.scrape());
  }
  bool tells(const std::string& beginning) const {
    return ("\n" + scraped()).find("\n" + beginning) != std::string::npos;
  }

  fakes::FakePlatform platform_;
  ServedMetrics served_{"1.2.3"};
  std::optional<GeneralModel> general_;
};

TEST_F(ServedMetricsTest, ListensWhereItIsTold) {
  start();
  EXPECT_EQ(platform_.desktop.metricsServer.listening, (ports::ListenAddress{"127.0.0.1", 9123}));
}

TEST_F(ServedMetricsTest, SaysWhyItCannot) {
  platform_.desktop.metricsServer.problem = "the port is in use";
  const auto problem = served_.listen(platform_.platform(), {"127.0.0.1", 9123});
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->message, "can't serve on 127.0.0.1:9123: the port is in use");
}

TEST_F(ServedMetricsTest, TellsThatItRunsBeforeThereIsAModel) {
  ASSERT_EQ(served_.listen(platform_.platform(), {"127.0.0.1", 9123}), std::nullopt);
  EXPECT_EQ(scraped(),
            "pallimo_build_info{version=\"1.2.3\"} 1\npallimo_helper_up 0\n"
            "pallimo_samples_total 0\n");
}

TEST_F(ServedMetricsTest, NamesTheMachineAndLeavesOutWhatItDoesNotTell) {
  start();
  EXPECT_TRUE(tells("pallimo_machine_info{model=\"Mac14,9\",chip=\"Apple M2 Pro\"} 1\n"));
  EXPECT_TRUE(tells("pallimo_cores{kind=\"performance\"} 8\n"));
  EXPECT_FALSE(tells("pallimo_cores{kind=\"efficiency\"}"));
  EXPECT_FALSE(tells("pallimo_cores{kind=\"gpu\"}"));
}

TEST_F(ServedMetricsTest, NoCoresOfTheGpuAreANumberToo) {
  platform_.programLauncher.setOutput(
      "/usr/sbin/system_profiler -xml SPDisplaysDataType",
      R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array><dict><key>_items</key>
         <array><dict><key>sppci_cores</key><string>0</string></dict></array></dict></array>
         </plist>)");
  start();
  EXPECT_TRUE(tells("pallimo_cores{kind=\"gpu\"} 0\n")) << scraped();
}

TEST_F(ServedMetricsTest, ServesEverySampleAtItsRow) {
  start();
  helperSends(SampleDocument());
  helperSends(SampleDocument{.combinedPower = 3500});
  EXPECT_TRUE(tells("pallimo_power_watts{domain=\"package\"} 3.5\n"));
  EXPECT_TRUE(tells("pallimo_power_watts{domain=\"dram\"} 1\n"));
  EXPECT_TRUE(tells("pallimo_frequency_hertz{domain=\"efficiency_cores\"} 1500000000\n"));
  EXPECT_TRUE(tells("pallimo_frequency_hertz{domain=\"gpu\"} 444000000\n"));
  EXPECT_TRUE(tells("pallimo_samples_total 2\n"));
  EXPECT_TRUE(tells("pallimo_last_sample_timestamp_seconds 1772715753.123\n"));
  EXPECT_TRUE(tells("pallimo_sampling_period_seconds 0.5\n"));
}

TEST_F(ServedMetricsTest, AMachineWithoutSensorsTicksAndGpuHasNoSuchFigures) {
  start();
  helperSends(SampleDocument());
  EXPECT_FALSE(tells("pallimo_temperature_celsius"));
  EXPECT_FALSE(tells("pallimo_utilization_ratio"));
}

TEST_F(ServedMetricsTest, AGpuThatTellsIsServed) {
  platform_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 25));
  start();
  helperSends(SampleDocument());
  EXPECT_TRUE(tells("pallimo_utilization_ratio{domain=\"gpu\"} 0.25\n"));
}

/// Another thread may clear the models at any moment.
TEST_F(ServedMetricsTest, AFigureAndWhetherItIsToldAreOfOneLook) {
  platform_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 25));
  makeModel();
  general_->sampleRows()->addReceiver(
      [this](const logging::LogRow&) { general_->modelUtilization()->clearData(); });
  follow();
  helperSends(SampleDocument());
  EXPECT_TRUE(tells("pallimo_utilization_ratio{domain=\"gpu\"} 0.25\n"));
}

TEST_F(ServedMetricsTest, ItKeepsNoModelAlive) {
  start();
  const auto rows = general_->sampleRows();  // with what receives them
  const std::weak_ptr<sampling::SGPowerMetrics> engine = general_->modelPowerMetrics();
  const std::weak_ptr<modules::ModuleModelUtilization> module = general_->modelUtilization();
  general_.reset();
  EXPECT_TRUE(engine.expired());
  EXPECT_TRUE(module.expired());
}

TEST_F(ServedMetricsTest, ADocumentThatCannotBeReadIsASampleWithoutItsFigures) {
  start();
  helperSends(SampleDocument());
  helperSends(base::Bytes{'x'});
  EXPECT_TRUE(tells("pallimo_samples_total 2\n"));
  EXPECT_FALSE(tells("pallimo_power_watts"));
  EXPECT_FALSE(tells("pallimo_frequency_hertz"));
}

TEST_F(ServedMetricsTest, FiguresGoWhenTheHistoriesAreEmptied) {
  start();
  helperSends(SampleDocument());
  platform_.notifications.post(base::notification::kClearData);
  EXPECT_FALSE(tells("pallimo_power_watts"));
  EXPECT_TRUE(tells("pallimo_samples_total 1\n"));
}

TEST_F(ServedMetricsTest, TellsWhetherTheHelperServes) {
  start();
  EXPECT_TRUE(tells("pallimo_helper_up 1\n"));
  general_->xpcmanager()->uninstallHelper();
  platform_.backgroundQueue.run();
  platform_.mainQueue.run();
  EXPECT_TRUE(tells("pallimo_helper_up 0\n"));
}

}  // namespace
}  // namespace pallimo::app
