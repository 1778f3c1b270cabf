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
  queue().advance(60s);
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

TEST_F(InstallButton, IsPressedOnceASecondAsLongAsTheScreenIsShown) {
  start();
  queue().advance(3s);
  EXPECT_EQ(installations(), 3u);
}

TEST_F(InstallButton, IsPressedOnceARealSecondInAFasterRun) {
  settings_.speed = 20;
  start();
  queue().advance(19'999ms);
  EXPECT_EQ(installations(), 0u);
  queue().advance(40'001ms);
  EXPECT_EQ(installations(), 3u);
}

TEST_F(InstallButton, BringsTheSamplesWhenTheHelperAnswers) {
  start();
  helper().fireInvalidation();
  queue().advance(1s);
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
  queue().advance(60s);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(ending(), "running");
}

TEST_F(InstallButton, IsPressedAgainForAHelperThatWasLost) {
  startWithUsableHelper();
  queue().advance(10'300ms);
  helperDies();
  EXPECT_EQ(ending(), "running");
  EXPECT_EQ(installations(), 0u);
  queue().advance(700ms);
  EXPECT_EQ(installations(), 1u);
  probeIsAnswered();
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(output_.takeLines().size(), 2u);
}

TEST_F(InstallButton, ARefusalIsStatus5) {
  platform_.helperInstaller.blesses = false;
  start();
  queue().advance(1s);
  EXPECT_EQ(ending(), "5: the installation of the helper was refused; start again and allow it");
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
  EXPECT_EQ(ending(),
            "3: the helper does not answer, 5 seconds after its installation; the system log may "
            "say why");
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
