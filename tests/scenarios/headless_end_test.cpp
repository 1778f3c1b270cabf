// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/whole_program.h"

#include <thread>

namespace pallimo::scenarios {
namespace {

class HeadlessEnd : public WholeProgram {
 protected:
  /// The helper answers every question and gives nothing else.
  void respondFor(int seconds) {
    for (int second = 0; second < seconds; ++second) {
      queue().advance(1s);
      while (helper().replyIsResponding(true)) {
      }
      queue().run();
    }
  }
  /// It answers every request with nothing.
  void runsFailFor(int seconds) {
    for (int second = 0; second < seconds; ++second) {
      helper().sendResult(std::nullopt);
      respondFor(1);
    }
  }
};

TEST_F(HeadlessEnd, WithoutACountTheRunGoesOn) {
  startWithUsableHelper();
  sampleFor(100);
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, AfterNSamplesWithStatus0AndExactlyNRows) {
  settings_.samples = 2;
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(ending(), "running");
  for (int more = 0; more < 3; ++more) helper().sendResult(bytesOf(SampleDocument{}));
  queue().run();
  EXPECT_EQ(ending(), "0");
  EXPECT_EQ(output_.takeLines().size(), 3u);  // one of them the header
}

TEST_F(HeadlessEnd, AClosedOutputIsStatus0) {
  startWithUsableHelper();
  output_.state = ports::StandardOutput::State::closed;
  helperSends();
  EXPECT_EQ(ending(), "0");
}

TEST_F(HeadlessEnd, AnOutputThatCannotBeWrittenIsStatus1) {
  startWithUsableHelper();
  output_.state = ports::StandardOutput::State::failed;
  helperSends();
  EXPECT_EQ(ending(), "1: can't write to standard output: No space left on device");
}

TEST_F(HeadlessEnd, AnInterruptionByTheUserIsStatus0AndPrintsTheRowsThatWereTaken) {
  startWithUsableHelper();
  helper().sendResult(bytesOf(SampleDocument{}));
  run_->interrupt();
  helper().sendResult(bytesOf(SampleDocument{}));
  queue().run();
  EXPECT_EQ(ending(), "0");
  EXPECT_EQ(output_.takeLines().size(), 2u);  // the header and the row before
}

TEST_F(HeadlessEnd, AnInterruptionBeforeTheHelperAnswersIsStatus0) {
  start();
  run_->interrupt();
  queue().run();
  EXPECT_EQ(ending(), "0");
}

TEST_F(HeadlessEnd, AHelperThatIsSilentForFiveSecondsIsStatus3) {
  start();
  queue().advance(4999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(),
            "3: the helper is absent or does not answer; run with --install-helper to install it");
}

TEST_F(HeadlessEnd, AnAbsentHelperIsStatus3) {
  start();
  helper().fireInvalidation();
  queue().advance(5s);
  EXPECT_EQ(ending(),
            "3: the helper is absent or does not answer; run with --install-helper to install it");
}

TEST_F(HeadlessEnd, ALinkThatCannotBeMadeIsStatus3) {
  platform_.helperConnector.setConnects(false);
  start();
  queue().advance(5s);
  EXPECT_EQ(ending(),
            "3: the helper is absent or does not answer; run with --install-helper to install it");
}

TEST_F(HeadlessEnd, AHelperThatAnswersNoIsStatus3) {
  start();
  helper().replyIsResponding(false);
  queue().advance(5s);
  EXPECT_EQ(ending(),
            "3: the helper is absent or does not answer; run with --install-helper to install it");
}

TEST_F(HeadlessEnd, AHelperThatAnswersInTimeIsNotWaitedForAgain) {
  start();
  queue().advance(4999ms);
  helperAnswers();
  sampleFor(60);
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, TheWaitingLimitIsRealTimeInAFasterRun) {
  settings_.speed = 20;
  start();
  queue().advance(99'999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending().substr(0, 1), "3");
}

TEST_F(HeadlessEnd, AnotherProcessorIsStatus3AtOnceAndNoHelperIsContacted) {
  platform_.setCpuType(7);
  settings_.installHelper = true;
  start();
  EXPECT_EQ(ending(), "3: this app is only for Apple silicon; it does not work on this processor");
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
}

TEST_F(HeadlessEnd, AHelperThatIsOutOfDateIsStatus4) {
  start();
  helperAnswers("0.9");
  EXPECT_EQ(ending(), "4: the helper is out of date; run with --install-helper to update it");
}

TEST_F(HeadlessEnd, AHelperThatIsLostWhileSamplingIsStatus6) {
  startWithUsableHelper();
  helperSends();
  helperDies();
  EXPECT_EQ(
      ending(),
      "6: the helper was lost while sampling; start again, or run with --install-helper to go on");
}

TEST_F(HeadlessEnd, AHelperThatIsLostBeforeTheFirstSampleIsLostToo) {
  startWithUsableHelper();
  helperDies();
  EXPECT_EQ(ending().substr(0, 1), "6");
}

TEST_F(HeadlessEnd, AHelperThatDiesBeforeItWasUsableIsWaitedFor) {
  start();
  helperDies();
  EXPECT_EQ(ending(), "running");
  queue().advance(5s);
  EXPECT_EQ(ending().substr(0, 1), "3");
}

TEST_F(HeadlessEnd, AHelperThatCameAndWentBeforeAnybodyLookedIsStatus3WhenTheLimitIsOver) {
  start();
  helper().replyIsResponding(true);
  helper().replyVersion("1.0");
  helper().interrupt();
  queue().run();
  EXPECT_EQ(ending(), "running");
  queue().advance(5s);
  EXPECT_EQ(ending().substr(0, 1), "3");
}

TEST_F(HeadlessEnd, AUsableHelperThatIsSilentIsStatus3AtTheSixthLook) {
  startWithUsableHelper();
  helperSends();
  queue().advance(5999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kSilent);
}

TEST_F(HeadlessEnd, AUsableHelperThatIsSilentIsStatus3AlsoWithTheButton) {
  settings_.installHelper = true;
  startWithUsableHelper();
  queue().advance(6s);
  EXPECT_EQ(ending(), kSilent);
  EXPECT_EQ(installations(), 0u);
}

TEST_F(HeadlessEnd, TheLimitOfSilenceIsRealTimeInAFasterRun) {
  settings_.speed = 20;
  startWithUsableHelper();
  queue().advance(119'999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kSilent);
}

TEST_F(HeadlessEnd, EverySampleBeginsTheSilenceAnew) {
  startWithUsableHelper();
  for (int sample = 0; sample < 10; ++sample) {
    helperSends();
    queue().advance(5s);
  }
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, AHelperThatSamplesIsAskedNothing) {
  startWithUsableHelper();
  messagesSent();
  sampleFor(60);
  EXPECT_EQ(questionsSent(), 0u);
}

TEST_F(HeadlessEnd, ASilentHelperIsAskedEverySecondFromTheSecondOn) {
  startWithUsableHelper();
  messagesSent();
  queue().advance(1999ms);
  EXPECT_EQ(questionsSent(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(questionsSent(), 1u);
  queue().advance(3s);
  EXPECT_EQ(questionsSent(), 3u);
}

TEST_F(HeadlessEnd, AHelperThatRespondsIsNotSilentHoweverLongItsRunsTake) {
  platform_.defaults.setDouble("samplingResolution", 60'000);
  startWithUsableHelper();
  respondFor(60);
  EXPECT_EQ(ending(), "running");
  sampleFor(60);
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, AHelperWhoseToolIsGoneIsStatus7AtTheFifthLook) {
  startWithUsableHelper();
  runsFailFor(4);
  EXPECT_EQ(ending(), "running");
  runsFailFor(1);
  EXPECT_EQ(ending(), kNoSamples);
  EXPECT_EQ(output_.takeLines(), Lines{});
}

TEST_F(HeadlessEnd, AHelperWhoseToolIsGoneIsStatus7AlsoWithTheButtonAndIsNotReplaced) {
  settings_.installHelper = true;
  startWithUsableHelper();
  runsFailFor(5);
  EXPECT_EQ(ending(), kNoSamples);
  EXPECT_EQ(installations(), 0u);
}

TEST_F(HeadlessEnd, AHelperThatWasInstalledWithoutItsToolIsStatus7) {
  settings_.installHelper = true;
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  ASSERT_EQ(installations(), 1u);
  probeIsAnswered();
  runsFailFor(5);
  EXPECT_EQ(ending(), kNoSamples);
}

TEST_F(HeadlessEnd, AToolThatIsLostInMidRunIsStatus7) {
  startWithUsableHelper();
  sampleFor(10);
  runsFailFor(4);
  EXPECT_EQ(ending(), "running");
  runsFailFor(1);
  EXPECT_EQ(ending(), kNoSamples);
}

TEST_F(HeadlessEnd, ASampleBeginsTheCountOfFailedRunsAnew) {
  startWithUsableHelper();
  for (int round = 0; round < 20; ++round) {
    runsFailFor(4);
    sampleFor(1);
  }
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, ManyFailedRunsAtOnceAreOneLook) {
  startWithUsableHelper();
  for (int run = 0; run < 64; ++run) helper().sendResult(std::nullopt);
  queue().advance(1s);
  runsFailFor(3);
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, TheLimitOfFailedRunsIsRealTimeInAFasterRun) {
  settings_.speed = 20;
  startWithUsableHelper();
  runsFailFor(99);
  EXPECT_EQ(ending(), "running");
  runsFailFor(1);
  EXPECT_EQ(ending(), kNoSamples);
}

TEST_F(HeadlessEnd, AHelperThatRespondsAndOwesEveryResultIsStatus7AfterThePeriodAndHalfAMinute) {
  platform_.defaults.setDouble("samplingResolution", 10'000);
  startWithUsableHelper();
  respondFor(45);
  EXPECT_EQ(ending(), "running");
  respondFor(1);
  EXPECT_EQ(ending(), kNoSamples);
}

TEST_F(HeadlessEnd, TheLongestPeriodThatWasAskedForCountsForResultsThatAreOwed) {
  platform_.defaults.setDouble("samplingResolution", 10'000);
  startWithUsableHelper();
  respondFor(1);
  platform_.defaults.setDouble("samplingResolution", 100);
  respondFor(44);
  EXPECT_EQ(ending(), "running");
  helperSends();
  respondFor(35);
  EXPECT_EQ(ending(), "running");
  respondFor(1);
  EXPECT_EQ(ending(), kNoSamples);
}

TEST_F(HeadlessEnd, AHelperThatAnswersNoWhileSamplingIsStatus3) {
  startWithUsableHelper();
  for (int second = 0; second < 6; ++second) {
    queue().advance(1s);
    helper().replyIsResponding(false);
  }
  EXPECT_EQ(ending(), kSilent);
}

TEST_F(HeadlessEnd, AHelperThatIsGoneWithoutAnInterruptionIsStatus3) {
  startWithUsableHelper();
  for (int second = 0; second < 6; ++second) {
    helper().fireInvalidation();
    queue().advance(1s);
  }
  EXPECT_EQ(ending(), kSilent);
}

TEST_F(HeadlessEnd, AHelperThatGoesOnInTimeLosesNothing) {
  startWithUsableHelper();
  helperSends();
  queue().advance(5s);
  for (int late = 0; late < 5; ++late) helperSends();
  EXPECT_EQ(output_.takeLines().size(), 7u);  // one of them the header
  sampleFor(10);
  EXPECT_EQ(ending(), "running");
}

TEST_F(HeadlessEnd, NothingIsPrintedOrPressedAfterTheEnd) {
  settings_.samples = 1;
  settings_.installHelper = true;
  startWithUsableHelper();
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
  helperSends();
  helperDies();
  queue().advance(60s);
  EXPECT_EQ(ending(), "0");
  EXPECT_EQ(output_.takeLines(), Lines{});
  EXPECT_EQ(installations(), 0u);
}

}  // namespace
}  // namespace pallimo::scenarios
