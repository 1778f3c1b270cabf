// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "app/models/general_model.h"
#include "fakes/fake_platform.h"
#include "unit/app/models/probed_ports.h"

namespace pallimo::app {
namespace {

using Steps = std::vector<std::string>;

/// What can be seen from outside of the order in which the root makes, wires and asks.
class CreationOrderTest : public testing::Test {
 protected:
  CreationOrderTest() : probed_(platform_.platform()) {
    platform_.defaults.setText("reference", "0123456789abcdef");  // of an earlier launch
    // How often one looks is nothing of the order.
    const auto tell = [this](const std::string& what) {
      if (std::find(steps_.begin(), steps_.end(), what) == steps_.end()) steps_.push_back(what);
    };
    probed_.tell = tell;
    platform_.defaults.onRead = [tell](std::string_view key) { tell(std::string(key)); };
  }
  ~CreationOrderTest() override { platform_.mainQueue.run(); }

  fakes::FakePlatform platform_;
  ProbedPorts probed_;
  Steps steps_;
};

TEST_F(CreationOrderTest, IsLogEngineModulesTitleAndLastTheAnalytics) {
  const GeneralModel general(probed_.platform());
  EXPECT_EQ(steps_, (Steps{
                        "notices",             // the log's notices
                        "pathFolderLocation",  // the log
                        "gpuFrequency",
                        "samplingResolution",  // the engine
                        "smc",                 // temperature
                        "program",             // title
                        "reference",           // analytics
                        "http",
                    }));
}

/// A manager that is there hears that a helper was installed.
TEST_F(CreationOrderTest, TheManagerIsMadeBetweenTheEngineAndTheModules) {
  for (const auto& [step, isThere] :
       {std::pair("samplingResolution", false), std::pair("smc", true)}) {
    probed_.tell = [this, step = step](const std::string& what) {
      if (what == step) platform_.notifications.post(base::notification::kXPCDidInstall);
    };
    platform_.defaults.onRead = [this](std::string_view key) { probed_.tell(std::string(key)); };
    const GeneralModel general(probed_.platform());
    platform_.mainQueue.run();
    EXPECT_EQ(general.xpcmanager()->isAuthorized(), isThere) << step;
  }
}

/// Models follow "UpdateView" from their creation on, and are told in that order.
TEST_F(CreationOrderTest, ModulesAreMadeInTheOrderPowerFrequencyTemperatureUtilisation) {
  const GeneralModel general(probed_.platform());
  Steps published;
  const auto names = [&published](std::string name) {
    return [&published, name] { published.push_back(name); };
  };
  const auto power = general.modelPower()->observe(names("power"));
  const auto utilization = general.modelUtilization()->observe(names("utilization"));
  const auto temperature = general.modelTemperature()->observe(names("temperature"));
  const auto frequency = general.modelFrequency()->observe(names("frequency"));
  platform_.notifications.post(base::notification::kUpdateView);
  EXPECT_EQ(published, (Steps{"power", "frequency", "temperature", "utilization"}));
}

TEST_F(CreationOrderTest, TheAnalyticsSendOneRequestAndSampleNothing) {
  const GeneralModel general(probed_.platform());
  platform_.mainQueue.advance(std::chrono::seconds(10));
  EXPECT_EQ(platform_.desktop.analyticsClient.takeSent().size(), 1u);
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
  EXPECT_EQ(platform_.mainQueue.liveTimers(), 0u);
}

TEST_F(CreationOrderTest, TheRequestGoesToThePlatformsServer) {
  const GeneralModel general(probed_.platform());
  const auto sent = platform_.desktop.analyticsClient.takeSent();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].url.rfind("https://analytics.example/piwik.php?", 0), 0u) << sent[0].url;
}

TEST_F(CreationOrderTest, TheUpdaterIsNotStarted) {
  const GeneralModel general(probed_.platform());
  EXPECT_EQ(platform_.desktop.softwareUpdater.calls, Steps{});
}

TEST_F(CreationOrderTest, LoggingIsOff) {
  const GeneralModel general(probed_.platform());
  EXPECT_FALSE(general.logfileModel()->isLogEnabled());
  EXPECT_EQ(platform_.desktop.userNotifications.texts(), Steps{});
}

}  // namespace
}  // namespace pallimo::app
