// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

class Sampling : public WholeProgram {
 protected:
  /// Two temperatures of the CPU and one of the GPU, two processors since boot, a GPU at work.
  void giveSensors() {
    platform_.smcDevice.setFloat("Tp01", 40);
    platform_.smcDevice.setFloat("Tp05", 60);
    platform_.smcDevice.setFloat("Tg05", 35);
    platform_.processorTicks.set({{20, 5, 75, 0}, {50, 25, 25, 0}});
    platform_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 37));
  }

  /// One history of each module: power, utilisation, frequency, temperature.
  std::vector<std::size_t> lengthsOfHistories() {
    return {general().modelPower()->snapshot()->historicPKG.length,
            general().modelUtilization()->snapshot()->historic.length,
            general().modelFrequency()->snapshot()->historicECore.length,
            general().modelTemperature()->snapshot()->historicCPUAvg.length};
  }
};

const std::string kRequest = "requestPowermetrics 500.000000";

TEST_F(Sampling, AHelperThatAnswersWithItsVersionIsAskedForSamplesAtOnce) {
  startWithUsableHelper();
  EXPECT_EQ(messagesSent(), (Lines{"isResponding", "getVersion", kRequest}));
}

TEST_F(Sampling, OneRequestASecondWhateverComesBack) {
  startWithUsableHelper();
  helper().sendResult(std::nullopt);
  messagesSent();
  queue().advance(1s);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
  helperSends();
  helperSends();
  queue().advance(1s);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
  helperSends();
  queue().advance(1s);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
}

TEST_F(Sampling, NothingIsAskedBeforeTheHelperHasAnswered) {
  start();
  queue().advance(3s);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
}

TEST_F(Sampling, ASampleBecomesARow) {
  giveSensors();
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(output_.takeLines()[1],
            "13:02:33.123, 0.000, 12.000, 8.000, 1.000, 0.100, 3.000, 1500, 3000, 444, 40, 50, 60, "
            "35, 50.000, 25.000, 75.000, 37.000");
}

TEST_F(Sampling, WithoutSensorsTicksAndGpuTheRowSaysSo) {
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(
      output_.takeLines()[1],
      "13:02:33.123, 0.000, 12.000, 8.000, 1.000, 0.100, 3.000, 1500, 3000, 444, -1, nan, -1, "
      "nan, nan, nan, nan, 0.000");
}

TEST_F(Sampling, UtilisationCountsFromOneSampleToTheNext) {
  giveSensors();
  startWithUsableHelper();
  helperSends();
  platform_.processorTicks.advance({{10, 0, 0, 0}, {0, 0, 30, 0}});
  helperSends();
  const Lines lines = output_.takeLines();
  EXPECT_EQ(lines[2].substr(lines[2].size() - 30), "25.000, 100.000, 0.000, 37.000");
}

TEST_F(Sampling, ElapsedTimeCountsFromTheFirstRow) {
  startWithUsableHelper();
  helperSends();
  platform_.clock.advance(1500ms);
  helperSends();
  EXPECT_EQ(output_.takeLines()[2].substr(0, 19), "13:02:34.623, 1.500");
}

TEST_F(Sampling, TwoQuickResultsAreTwoRows) {
  startWithUsableHelper();
  SampleDocument second;
  second.combinedPower = 13000;
  helper().sendResult(bytesOf(SampleDocument{}));
  helper().sendResult(bytesOf(second));
  queue().run();
  const Lines lines = output_.takeLines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_NE(lines[1].find(", 12.000, "), std::string::npos);
  EXPECT_NE(lines[2].find(", 13.000, "), std::string::npos);
}

TEST_F(Sampling, AResultWithoutBytesIsNoRow) {
  startWithUsableHelper();
  helper().sendResult(std::nullopt);
  queue().run();
  EXPECT_EQ(output_.takeLines(), Lines{});
}

TEST_F(Sampling, ADocumentThatCannotBeReadLeavesTheAppsOwnReadings) {
  giveSensors();
  startWithUsableHelper();
  helperSends();
  platform_.processorTicks.advance({{10, 0, 0, 0}, {0, 0, 30, 0}});
  helper().sendResult(base::Bytes{'n', 'o', 't', ' ', 'o', 'n', 'e'});
  queue().run();
  EXPECT_EQ(output_.takeLines()[2],
            "13:02:33.123, 0.000, 0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 0, 40, 50, 60, 35, "
            "25.000, 100.000, 0.000, 37.000");
}

TEST_F(Sampling, ADocumentThatCannotBeReadNamesNoKindOfCores) {
  giveSensors();
  startWithUsableHelper();
  helper().sendResult(base::Bytes{'n', 'o', 't', ' ', 'o', 'n', 'e'});
  queue().run();
  EXPECT_EQ(output_.takeLines()[1],
            "13:02:33.123, 0.000, 0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 0, 40, 50, 60, 35, "
            "50.000, 0.000, 0.000, 37.000");
}

TEST_F(Sampling, ASampleBecomesALineOfJson) {
  settings_.format = app::OutputFormat::json;
  giveSensors();
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(output_.takeLines(),
            Lines{R"({"timeStamp":"2026-03-05T13:02:33.123+00:00","ellapsedTime":0.0,)"
                  R"("pkgPower":12.0,"cpuPower":8.0,"dramPower":1.0,"anePower":0.1,)"
                  R"("gpuPower":3.0,"cpuECoreFrequency":1500.0,"cpuPCoreFrequency":3000.0,)"
                  R"("gpuFrequency":444.0,"cpuAvgTmp":50.0,"cpuMaxTmp":60.0,"cpuMinTmp":40.0,)"
                  R"("gpuAvgTmp":35.0,"cpuUtilization":50.0,"cpuEUtilization":25.0,)"
                  R"("cpuPUtilization":75.0,"gpuUtilization":37.0,"clusters":[)"
                  R"({"name":"E-Cluster","frequency":1500.0,"cpus":[0]},)"
                  R"({"name":"P-Cluster","frequency":3000.0,"cpus":[1]}]})"});
}

TEST_F(Sampling, JsonWritesMinusOneNullAndAHundredPercent) {
  settings_.format = app::OutputFormat::json;
  platform_.processorTicks.set({{60, 30, 0, 10}});  // processor 1 is absent
  startWithUsableHelper();
  helperSends();
  const std::string line = output_.takeLines().at(0);
  const std::size_t begin = line.find("\"cpuAvgTmp\"");
  EXPECT_EQ(line.substr(begin, line.find("\"clusters\"") - begin),
            R"("cpuAvgTmp":null,"cpuMaxTmp":-1.0,"cpuMinTmp":-1.0,"gpuAvgTmp":null,)"
            R"("cpuUtilization":100.0,"cpuEUtilization":100.0,"cpuPUtilization":null,)"
            R"("gpuUtilization":0.0,)");
}

TEST_F(Sampling, TheModelsPublishOnceASampleWasDistributed) {
  startWithUsableHelper();
  Lines published;
  const auto power = general().modelPower()->observe([&] { published.push_back("power"); });
  const auto utilization =
      general().modelUtilization()->observe([&] { published.push_back("utilization"); });
  const auto frequency =
      general().modelFrequency()->observe([&] { published.push_back("frequency"); });
  const auto temperature =
      general().modelTemperature()->observe([&] { published.push_back("temperature"); });
  helperSends();
  std::sort(published.begin(), published.end());
  EXPECT_EQ(published, (Lines{"frequency", "power", "temperature", "utilization"}));
}

TEST_F(Sampling, AChangedPeriodClearsTheHistoriesAndShowsInTheNextRequest) {
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(lengthsOfHistories(), (std::vector<std::size_t>{1, 1, 1, 1}));
  platform_.defaults.setDouble("samplingResolution", 250);
  queue().run();
  EXPECT_EQ(lengthsOfHistories(), (std::vector<std::size_t>{0, 0, 0, 0}));
  messagesSent();
  queue().advance(1s);
  EXPECT_EQ(messagesSent(), Lines{"requestPowermetrics 250.000000"});
}

TEST_F(Sampling, TheGpuSettingShowsInTheNextRequest) {
  startWithUsableHelper();
  messagesSent();
  platform_.defaults.setBool("gpuFrequency", true);
  queue().advance(1s);
  EXPECT_EQ(messagesSent(), Lines{kRequest + " GPU"});
}

TEST_F(Sampling, AnInterruptionEndsTheRequestsAndClearsTheHistories) {
  settings_.installHelper = true;  // so that the run goes on
  startWithUsableHelper();
  helperSends();
  helperDies();
  EXPECT_EQ(lengthsOfHistories(), (std::vector<std::size_t>{0, 0, 0, 0}));
  EXPECT_EQ(queue().liveTimers(), 0u);
}

TEST_F(Sampling, ResultsAfterAnInterruptionAreNoRows) {
  settings_.installHelper = true;
  startWithUsableHelper();
  helperDies();
  general().modelPowerMetrics()->handleResult(bytesOf(SampleDocument{}));
  queue().run();
  EXPECT_EQ(output_.takeLines(), Lines{});
}

TEST_F(Sampling, AnInvalidationAloneWithdrawsNothing) {
  startWithUsableHelper();
  helper().fireInvalidation();
  queue().run();
  messagesSent();
  queue().advance(1s);
  EXPECT_EQ(platform_.helperConnector.count(), 2u);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
  EXPECT_EQ(ending(), "running");
}

TEST_F(Sampling, TheEndOfTheAppClosesTheHelper) {
  startWithUsableHelper();
  messagesSent();
  general().applicationWillTerminate();
  EXPECT_EQ(messagesSent(), Lines{"closeHelper"});
}

}  // namespace
}  // namespace pallimo::scenarios
