// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

/// A run whose button is pressed and which finds an old helper.
class UpdateButton : public WholeProgram {
 protected:
  UpdateButton() { settings_.installHelper = true; }

  void startWithOldHelper() {
    start();
    helperAnswers("0.9");
    messagesSent();
  }
  /// The button is pressed, the old helper has removed itself, the new one is installed.
  void untilInstalled() {
    startWithOldHelper();
    queue().advance(2s);
    helperDies();
    queue().advance(1s);
  }
};

TEST_F(UpdateButton, IsFirstPressedOneSecondAfterTheStart) {
  startWithOldHelper();
  queue().advance(999ms);
  EXPECT_TRUE(general().xpcmanager()->isUpdateNeeded());
  queue().advance(1ms);
  EXPECT_FALSE(general().xpcmanager()->isUpdateNeeded());
  EXPECT_TRUE(general().xpcmanager()->isRequestedToUninstall());
}

TEST_F(UpdateButton, TellsTheOldHelperToRemoveItselfOneSecondAfterThePress) {
  startWithOldHelper();
  queue().advance(1999ms);
  EXPECT_EQ(messagesSent(), Lines{});
  queue().advance(1ms);
  EXPECT_EQ(messagesSent(), Lines{"unInstallHelper"});
}

TEST_F(UpdateButton, InstallsTheNewHelperTwoSecondsAfterThePress) {
  startWithOldHelper();
  queue().advance(2s);
  helperDies();
  messagesSent();
  queue().advance(999ms);
  EXPECT_EQ(platform_.helperInstaller.calls, Lines{});
  queue().advance(1ms);
  EXPECT_EQ(platform_.helperInstaller.calls, Lines{"bless com.ostrovane.powermetrics"});
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
}

TEST_F(UpdateButton, RemovalAndInstallationHaveAFreshConnectionEach) {
  startWithOldHelper();
  EXPECT_EQ(platform_.helperConnector.count(), 1u);
  queue().advance(2s);
  EXPECT_EQ(platform_.helperConnector.count(), 2u);
  helperDies();
  queue().advance(1s);
  EXPECT_EQ(platform_.helperConnector.count(), 3u);
}

TEST_F(UpdateButton, BringsTheSamplesOfTheNewHelper) {
  untilInstalled();
  probeIsAnswered();
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
  sampleFor(60);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(ending(), "running");
}

TEST_F(UpdateButton, TheInstallScreenThatIsShownMeanwhileIsLeftAlone) {
  startWithOldHelper();
  queue().advance(2999ms);
  EXPECT_EQ(installations(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 1u);
}

TEST_F(UpdateButton, TheInstallButtonIsLeftAloneWhileTheNewHelpersAnswerIsAwaited) {
  untilInstalled();
  queue().advance(4999ms);
  EXPECT_EQ(installations(), 1u);
  probeIsAnswered();
  sampleFor(10);
  EXPECT_EQ(ending(), "running");
}

TEST_F(UpdateButton, TheInstallButtonIsPressedOneSecondAfterAnInstallationWhoseAnswerIsLost) {
  untilInstalled();
  helperDies();
  queue().advance(999ms);
  EXPECT_EQ(installations(), 1u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 2u);
}

TEST_F(UpdateButton, TheInstallButtonIsPressedOneRealSecondLaterInAFasterRun) {
  settings_.speed = 20;
  startWithOldHelper();
  queue().advance(21s);
  helperDies();
  queue().advance(1s);
  helperDies();
  EXPECT_EQ(installations(), 1u);
  queue().advance(19'999ms);
  EXPECT_EQ(installations(), 1u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 2u);
}

TEST_F(UpdateButton, TheOldHelpersEndIsNeitherARefusalNorALoss) {
  startWithOldHelper();
  queue().advance(2s);
  helperDies();
  EXPECT_EQ(ending(), "running");
}

TEST_F(UpdateButton, ARefusalTwoSecondsAfterThePressIsStatus5) {
  platform_.helperInstaller.blesses = false;
  startWithOldHelper();
  queue().advance(2999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kRefusal);
}

TEST_F(UpdateButton, AWithheldAuthorisationStopsTheProgramTwoSecondsAfterThePress) {
  platform_.authorizationServices.attempt = {-60005, nullptr};
  startWithOldHelper();
  queue().advance(2999ms);
  EXPECT_DEATH(queue().advance(1ms), "Authorization not acquired\\.");
}

TEST_F(UpdateButton, TheNewHelperIsWaitedForFiveSecondsFromItsInstallation) {
  untilInstalled();
  queue().advance(4999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(UpdateButton, TheNewHelperIsWaitedForFiveRealSecondsInAFasterRun) {
  settings_.speed = 20;
  startWithOldHelper();
  queue().advance(20s + 2s + 99'999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(UpdateButton, TheFiveSecondsBeginAtTheEndOfAnInstallationThatTakesLong) {
  installationsTake(30s);
  untilInstalled();
  queue().advance(4999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(UpdateButton, ANewHelperThatAnswersAfterALongInstallationIsUsed) {
  installationsTake(30s);
  untilInstalled();
  EXPECT_EQ(ending(), "running");
  probeIsAnswered();
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
  sampleFor(10);
  EXPECT_EQ(ending(), "running");
  EXPECT_EQ(installations(), 1u);
}

TEST_F(UpdateButton, ANewHelperThatIsLostIsInstalledAnew) {
  untilInstalled();
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  helperDies();
  queue().advance(1s);
  EXPECT_EQ(installations(), 2u);
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 3u);
}

TEST_F(UpdateButton, ARunThatIsInterruptedDuringTheUpdateEndsWhenTheNewHelperIsInstalled) {
  startWithOldHelper();
  queue().advance(1500ms);
  run_->interrupt();
  queue().advance(1499ms);
  EXPECT_EQ(ending(), "running");
  EXPECT_EQ(installations(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(ending(), "0");
  EXPECT_EQ(installations(), 1u);
  queue().advance(60s);
  EXPECT_EQ(installations(), 1u);
}

TEST_F(UpdateButton, ARunThatIsInterruptedDuringARefusedUpdateIsStatus0) {
  platform_.helperInstaller.blesses = false;
  startWithOldHelper();
  queue().advance(1500ms);
  run_->interrupt();
  queue().advance(1500ms);
  EXPECT_EQ(ending(), "0");
}

TEST_F(UpdateButton, ASecondInterruptionDoesNotWaitForTheInstallation) {
  startWithOldHelper();
  queue().advance(1500ms);
  run_->interrupt();
  run_->interrupt();
  queue().run();
  EXPECT_EQ(ending(), "0");
  EXPECT_EQ(installations(), 0u);
}

TEST_F(UpdateButton, AnInterruptionAfterTheInstallationEndsTheRunAtOnce) {
  untilInstalled();
  run_->interrupt();
  queue().run();
  EXPECT_EQ(ending(), "0");
}

TEST_F(UpdateButton, IsNotPressedWithoutTheOption) {
  settings_.installHelper = false;
  startWithOldHelper();
  queue().advance(60s);
  EXPECT_EQ(ending(), "4: the helper is out of date; run with --install-helper to update it");
  EXPECT_EQ(messagesSent(), Lines{});
}

}  // namespace
}  // namespace pallimo::scenarios
