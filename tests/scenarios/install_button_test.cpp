// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "scenarios/whole_program.h"

#include <thread>

namespace pallimo::scenarios {
namespace {

/// A run whose install button is pressed.
class InstallButton : public WholeProgram {
 protected:
  InstallButton() { settings_.installHelper = true; }
};

TEST_F(InstallButton, IsNotPressedWhenTheHelperIsUsable) {
  startWithUsableHelper();
  sampleFor(60);
  EXPECT_EQ(installations(), 0u);
}

TEST_F(InstallButton, IsNotPressedWithoutTheOption) {
  settings_.installHelper = false;
  start();
  queue().advance(60s);
  EXPECT_EQ(installations(), 0u);
}

TEST_F(InstallButton, IsFirstPressedOneSecondAfterTheStart) {
  start();
  queue().advance(999ms);
  EXPECT_EQ(installations(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 1u);
}

TEST_F(InstallButton, InstallsTheHelperUnderItsLabelAndProbesIt) {
  start();
  helper().fireInvalidation();
  messagesSent();
  queue().advance(1s);
  EXPECT_EQ(platform_.authorizationServices.calls, Lines{"createAuthorization"});
  EXPECT_EQ(platform_.helperInstaller.calls, Lines{"bless com.ostrovane.powermetrics"});
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
}

TEST_F(InstallButton, IsNotPressedAgainWhileAnAnswerIsAwaited) {
  start();
  helper().fireInvalidation();
  queue().advance(5999ms);
  EXPECT_EQ(installations(), 1u);
  probeIsAnswered();
  sampleFor(10);
  EXPECT_EQ(ending(), "running");
}

TEST_F(InstallButton, IsNotPressedAgainForAHelperThatAnswersNo) {
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  probeIsAnswered(false);
  queue().advance(5s);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(InstallButton, IsNotPressedAgainForAHelperThatCannotBeStarted) {
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  helper().fireInvalidation();
  queue().advance(5s);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(InstallButton, IsPressedOnceASecondForHelpersThatDieInsteadOfAnswering) {
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  for (std::size_t presses = 1; presses <= 5; ++presses) {
    EXPECT_EQ(installations(), presses);
    helperDies();
    queue().advance(1s);
  }
  EXPECT_EQ(installations(), 5u);
  EXPECT_EQ(ending(), kStillNotUsable);  // five seconds after the first of them
}

TEST_F(InstallButton, IsPressedAgainWhenAnOldHelperTakesTheQuestionWithIt) {
  start();  // the old helper is silent, and its connection stands
  queue().advance(1s);
  helperDies();
  queue().advance(1s);
  EXPECT_EQ(installations(), 2u);
  probeIsAnswered();
  sampleFor(10);
  EXPECT_EQ(ending(), "running");
}

TEST_F(InstallButton, IsNotPressedAgainWhenTheInstallationEndsAnOldHelper) {
  start();  // the old helper is silent, and its connection stands
  platform_.helperInstaller.onCall = [this](const std::string&) {
    std::thread([this] { helper().interrupt(); }).join();
  };
  queue().advance(5999ms);
  EXPECT_EQ(installations(), 1u);
}

TEST_F(InstallButton, IsPressedAtMostOnceASecondWhenInstallationsTakeLong) {
  installationsTake(30s);
  start();
  queue().advance(1s);
  EXPECT_EQ(installations(), 1u);
  helperDies();
  queue().advance(999ms);
  EXPECT_EQ(installations(), 1u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 2u);
}

TEST_F(InstallButton, AHelperIsWaitedForFromTheEndOfItsInstallation) {
  installationsTake(30s);
  start();
  queue().advance(1s);
  queue().advance(4999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(InstallButton, IsPressedOnceARealSecondInAFasterRun) {
  settings_.speed = 20;
  start();
  queue().advance(19'999ms);
  EXPECT_EQ(installations(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 1u);
  helperDies();
  queue().advance(19'999ms);
  EXPECT_EQ(installations(), 1u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 2u);
}

TEST_F(InstallButton, BringsTheSamplesWhenTheHelperAnswers) {
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
  sampleFor(60);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(ending(), "running");
}

TEST_F(InstallButton, IsPressedAgainForAHelperThatWasLost) {
  startWithUsableHelper();
  sampleFor(10);
  queue().advance(300ms);
  output_.takeLines();
  helperDies();
  EXPECT_EQ(ending(), "running");
  EXPECT_EQ(installations(), 0u);
  queue().advance(700ms);
  EXPECT_EQ(installations(), 1u);
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 1u);
}

TEST_F(InstallButton, ARefusalIsStatus5) {
  platform_.helperInstaller.blesses = false;
  start();
  queue().advance(1s);
  EXPECT_EQ(ending(), kRefusal);
  EXPECT_EQ(installations(), 1u);
}

TEST_F(InstallButton, AnInterruptionOnAnotherThreadDuringThePressIsNoRefusal) {
  platform_.helperInstaller.onCall = [this](const std::string&) {
    std::thread([this] {
      platform_.notifications.post(base::notification::kXPCInstallError);
    }).join();
  };
  start();
  queue().advance(1s);
  EXPECT_EQ(ending(), "running");
}

TEST_F(InstallButton, AHelperThatIsSilentFiveSecondsAfterThePressIsStatus3) {
  start();
  queue().advance(5999ms);
  EXPECT_EQ(ending(), "running");
  queue().advance(1ms);
  EXPECT_EQ(ending(), kStillNotUsable);
}

TEST_F(InstallButton, EachHelperThatIsLostIsWaitedForAnew) {
  start();
  helper().fireInvalidation();
  queue().advance(5s);
  probeIsAnswered();
  queue().advance(500ms);
  helperDies();
  queue().advance(5'499ms);
  EXPECT_EQ(ending(), "running");  // the first press of this loss came at 6 s
  queue().advance(1ms);
  EXPECT_EQ(ending().substr(0, 1), "3");
}

TEST_F(InstallButton, AWithheldAuthorisationStopsTheProgram) {
  platform_.authorizationServices.attempt = {-60005, nullptr};
  start();
  EXPECT_DEATH(queue().advance(1s), "Authorization not acquired\\.");
}

}  // namespace
}  // namespace pallimo::scenarios
