// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/general_model.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_platform.h"
#include "ui/addresses.h"
#include "unit/app/models/probed_ports.h"

namespace pallimo::app {
namespace {

/// How many samples each module has taken: power, utilisation, frequency, temperature.
std::vector<std::size_t> samplesTaken(const GeneralModel& general) {
  return {general.modelPower()->snapshot()->historicPKG.length,
          general.modelUtilization()->snapshot()->historic.length,
          general.modelFrequency()->snapshot()->historicECore.length,
          general.modelTemperature()->snapshot()->historicCPUAvg.length};
}

class GeneralModelTest : public testing::Test {
 protected:
  ~GeneralModelTest() override { platform_.mainQueue.run(); }

  fakes::FakePlatform platform_;
};

TEST_F(GeneralModelTest, OwnsEveryModel) {
  const GeneralModel general(platform_.platform());
  EXPECT_NE(general.logfileModel(), nullptr);
  EXPECT_NE(general.modelPowerMetrics(), nullptr);
  EXPECT_NE(general.xpcmanager(), nullptr);
  EXPECT_NE(general.modelPower(), nullptr);
  EXPECT_NE(general.modelFrequency(), nullptr);
  EXPECT_NE(general.modelTemperature(), nullptr);
  EXPECT_NE(general.modelUtilization(), nullptr);
  EXPECT_NE(general.modelMainTitle(), nullptr);
  EXPECT_NE(general.modelMoreButton(), nullptr);
  EXPECT_NE(general.sparkle(), nullptr);
  EXPECT_NE(general.sampleRows(), nullptr);
}

TEST_F(GeneralModelTest, NothingSamplesAndNobodyIsAskedByCreatingIt) {
  const GeneralModel general(platform_.platform());
  platform_.mainQueue.advance(std::chrono::seconds(10));
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
  EXPECT_EQ(platform_.mainQueue.liveTimers(), 0u);
}

TEST_F(GeneralModelTest, TheManagerStartsAndStopsTheEngine) {
  const GeneralModel general(platform_.platform());
  platform_.notifications.post(base::notification::kXPCDidInstall);
  platform_.mainQueue.run();
  EXPECT_EQ(platform_.mainQueue.liveTimers(), 1u);
  platform_.notifications.post(base::notification::kXPCInstallError);
  platform_.mainQueue.run();
  EXPECT_EQ(platform_.mainQueue.liveTimers(), 0u);
}

TEST_F(GeneralModelTest, TheEngineAsksTheManagersGate) {
  const GeneralModel general(platform_.platform());
  general.modelPowerMetrics()->setAuthorized(true);
  platform_.mainQueue.run();
  EXPECT_EQ(platform_.helperConnector.count(), 0u);  // the gate is closed
  platform_.notifications.post(base::notification::kXPCDidInstall);
  platform_.mainQueue.advance(std::chrono::seconds(1));
  EXPECT_EQ(platform_.helperConnector.count(), 1u);
}

TEST_F(GeneralModelTest, ReadsTheMachinesIdentity) {
  platform_.systemControls.setInteger("hw.perflevel0.logicalcpu", 8);
  platform_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 0));
  const GeneralModel general(platform_.platform());
  EXPECT_EQ(general.modelMainTitle()->appleSiliconName(), "Apple M2 Pro");
  EXPECT_EQ(general.modelMainTitle()->gpuName(), "Apple M2 Pro");
  EXPECT_EQ(general.modelMainTitle()->numberOfPCore(), 8);
  EXPECT_EQ(general.modelTemperature()->sensorTmp().machineModel(), "Mac14,9");
}

TEST_F(GeneralModelTest, TheManagerKnowsTheUtilisationModule) {
  const GeneralModel general(platform_.platform());
  EXPECT_EQ(general.xpcmanager()->utilizationModelDelegate(), general.modelUtilization());
}

TEST_F(GeneralModelTest, TheMenuHearsOfTheHelpersChanges) {
  const GeneralModel general(platform_.platform());
  int published = 0;
  const auto subscription = general.modelMoreButton()->observe([&] { ++published; });
  platform_.notifications.post(base::notification::kXPCDidInstall);
  EXPECT_EQ(published, 0);
  platform_.mainQueue.run();
  EXPECT_EQ(published, 1);
  platform_.notifications.post(base::notification::kXPCInstallError);
  platform_.mainQueue.run();
  EXPECT_EQ(published, 2);
}

TEST_F(GeneralModelTest, ASampleReachesEveryModuleBeforeTheRowIsTaken) {
  const GeneralModel general(platform_.platform());
  platform_.notifications.post(base::notification::kXPCDidInstall);
  std::vector<std::size_t> lengths;
  general.sampleRows()->addReceiver(
      [&](const logging::LogRow&) { lengths = samplesTaken(general); });
  general.modelPowerMetrics()->handleResult(base::Bytes{});
  EXPECT_EQ(lengths, (std::vector<std::size_t>{1, 1, 1, 1}));
}

TEST_F(GeneralModelTest, ASampleGoesThroughPowerUtilisationFrequencyAndTemperatureInThisOrder) {
  using Step = std::pair<std::string, std::vector<std::size_t>>;
  ProbedPorts probed(platform_.platform());
  const GeneralModel general(probed.platform());
  platform_.notifications.post(base::notification::kXPCDidInstall);
  std::vector<Step> steps;
  probed.tell = [&](const std::string& what) { steps.emplace_back(what, samplesTaken(general)); };
  general.modelPowerMetrics()->handleResult(base::Bytes{});
  // The SMC is opened once for the CPU and once for the GPU.
  EXPECT_EQ(steps, (std::vector<Step>{
                       {"ticks", {1, 0, 0, 0}}, {"smc", {1, 1, 1, 0}}, {"smc", {1, 1, 1, 0}}}));
}

TEST_F(GeneralModelTest, The64BitArmTypeIsAppleSilicon) {
  platform_.setCpuType(0x0100000C);
  EXPECT_EQ(GeneralModel(platform_.platform()).processor(), helper_link::Processor::appleSilicon);
}

TEST_F(GeneralModelTest, AnotherProcessorIsNot) {
  platform_.setCpuType(7);
  EXPECT_EQ(GeneralModel(platform_.platform()).processor(), helper_link::Processor::other);
}

TEST_F(GeneralModelTest, EachLinkOfTheMenusOpensItsOneAddress) {
  GeneralModel general(platform_.platform());
  general.contactDeveloper();
  general.openStorePage();
  general.openSocialPage();
  EXPECT_EQ(platform_.desktop.urlOpener.takeOpened(),
            (std::vector<std::string>{ui::kSupportAddress, ui::kStoreAddress, ui::kSocialAddress}));
}

TEST_F(GeneralModelTest, TerminatingClosesTheHelper) {
  GeneralModel general(platform_.platform());
  general.applicationWillTerminate();
  EXPECT_EQ(platform_.helperConnector.journal().take().back(), "-> closeHelper");
}

TEST_F(GeneralModelTest, TerminatingDoesNotStopTheEngineByItself) {
  GeneralModel general(platform_.platform());
  platform_.notifications.post(base::notification::kXPCDidInstall);
  platform_.mainQueue.run();
  general.applicationWillTerminate();
  platform_.mainQueue.run();
  EXPECT_EQ(platform_.mainQueue.liveTimers(), 1u);
  EXPECT_TRUE(general.modelPowerMetrics()->isAuthorized());
  EXPECT_TRUE(general.xpcmanager()->isAuthorized());
}

TEST_F(GeneralModelTest, OnAnotherProcessorTerminatingContactsNoHelper) {
  platform_.setCpuType(7);
  GeneralModel general(platform_.platform());
  general.applicationWillTerminate();
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
}

TEST_F(GeneralModelTest, AHelperThatEndsBecauseItWasClosedIsNotReportedAsLost) {
  GeneralModel general(platform_.platform());
  general.applicationWillTerminate();
  platform_.helperConnector.latest()->interrupt();
  EXPECT_EQ(platform_.systemLog.lines(), std::vector<std::string>{});
}

TEST_F(GeneralModelTest, NoModelKeepsAnotherAlive) {
  auto general = std::make_unique<GeneralModel>(platform_.platform());
  const std::weak_ptr<sampling::SGPowerMetrics> engine = general->modelPowerMetrics();
  const std::weak_ptr<helper_link::XPCManager> manager = general->xpcmanager();
  const std::weak_ptr<modules::ModuleModelPower> power = general->modelPower();
  const std::weak_ptr<modules::ModuleModelFrequency> frequency = general->modelFrequency();
  const std::weak_ptr<modules::ModuleModelUtilization> utilization = general->modelUtilization();
  const std::weak_ptr<modules::ModuleModelTemperature> temperature = general->modelTemperature();
  const std::weak_ptr<modules::ModuleModelMainTitle> mainTitle = general->modelMainTitle();
  const std::weak_ptr<modules::ModuleModelMoreButton> moreButton = general->modelMoreButton();
  const std::weak_ptr<logging::LogFileModel> log = general->logfileModel();
  const std::weak_ptr<updates::SparkleUpdater> sparkle = general->sparkle();
  const std::weak_ptr<logging::SampleRows> rows = general->sampleRows();
  general.reset();
  EXPECT_TRUE(engine.expired());
  EXPECT_TRUE(manager.expired());
  EXPECT_TRUE(power.expired());
  EXPECT_TRUE(frequency.expired());
  EXPECT_TRUE(utilization.expired());
  EXPECT_TRUE(temperature.expired());
  EXPECT_TRUE(mainTitle.expired());
  EXPECT_TRUE(moreButton.expired());
  EXPECT_TRUE(log.expired());
  EXPECT_TRUE(sparkle.expired());
  EXPECT_TRUE(rows.expired());
}

TEST_F(GeneralModelTest, TheManagersEndShowsOnTheConsole) {
  { const GeneralModel general(platform_.platform()); }
  EXPECT_EQ(platform_.console.lines(), std::vector<std::string>{"DEINIT XPCManager"});
}

}  // namespace
}  // namespace pallimo::app
