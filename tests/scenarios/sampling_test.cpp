// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

using Sampling = WholeProgram;

const std::string kRequest = "requestPowermetrics 500.000000";

TEST_F(Sampling, AHelperThatAnswersWithItsVersionIsAskedForSamplesAtOnce) {
  startWithUsableHelper();
  EXPECT_EQ(messagesSent(), (Lines{"isResponding", "getVersion", kRequest}));
}

TEST_F(Sampling, OneRequestASecondWhateverComesBack) {
  startWithUsableHelper();
  messagesSent();
  queue().advance(3s);
  EXPECT_EQ(messagesSent(), (Lines{kRequest, kRequest, kRequest}));
}

TEST_F(Sampling, NothingIsAskedBeforeTheHelperHasAnswered) {
  start();
  queue().advance(3s);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
}

TEST_F(Sampling, ASampleBecomesARow) {
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(output_.takeLines()[1],
            "13:02:33.123, 0.000, 12.000, 8.000, 1.000, 0.100, 3.000, 1500, 3000, 444, 0, 0, 0, 0, "
            "0.000, 0.000, 0.000, 0.000");
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

TEST_F(Sampling, ADocumentThatCannotBeReadIsARowOfZeros) {
  startWithUsableHelper();
  helper().sendResult(base::Bytes{'n', 'o', 't', ' ', 'o', 'n', 'e'});
  queue().run();
  EXPECT_EQ(output_.takeLines()[1].substr(21, 44), "0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 0, ");
}

TEST_F(Sampling, TheModelsPublishOnceASampleWasDistributed) {
  startWithUsableHelper();
  int power = 0;
  int frequency = 0;
  const auto one = general().modelPower()->observe([&] { ++power; });
  const auto other = general().modelFrequency()->observe([&] { ++frequency; });
  helperSends();
  EXPECT_EQ(power, 1);
  EXPECT_EQ(frequency, 1);
}

TEST_F(Sampling, AChangedPeriodClearsTheHistoriesAndShowsInTheNextRequest) {
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 1u);
  platform_.defaults.setDouble("samplingResolution", 250);
  queue().run();
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 0u);
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
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 0u);
  EXPECT_EQ(queue().liveTimers(), 1u);  // of the button alone
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
