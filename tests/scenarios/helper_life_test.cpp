// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/content_view.h"
#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

using ui::MainContent;

const std::string kRequest = "requestPowermetrics 500.000000";

/// The program with its main content and without a run: the test presses its buttons.
class HelperLife : public WholeProgram {
 protected:
  void open() {
    general_.emplace(platform_.platform());
    general().sampleRows()->addReceiver([this](const logging::LogRow&) { ++rows_; });
    view_.emplace(queue(), general());
    queue().run();
    clears_ = platform_.notifications.observe(base::notification::kClearData,
                                              [this] { ++timesCleared_; });
  }
  void openWithHelper(const std::string& version = "1.0") {
    open();
    helperAnswers(version);
    messagesSent();
  }
  void openWithoutHelper() {
    open();
    helper().fireInvalidation();
    messagesSent();
  }
  MainContent shown() { return view_->content(); }
  void press() {
    view_->press();
    queue().run();
  }
  void uninstall() {
    general().xpcmanager()->uninstallHelper();
    queue().run();
  }
  void expectFlags(bool isAuthorized, bool isUpdateNeeded, bool isRequestedToUninstall) {
    EXPECT_EQ(general().xpcmanager()->isAuthorized(), isAuthorized);
    EXPECT_EQ(general().xpcmanager()->isUpdateNeeded(), isUpdateNeeded);
    EXPECT_EQ(general().xpcmanager()->isRequestedToUninstall(), isRequestedToUninstall);
  }

  std::optional<app::ContentView> view_;
  base::Subscription clears_;
  int rows_ = 0;
  int timesCleared_ = 0;
};

TEST_F(HelperLife, AnAbsentHelperShowsTheInstallScreenForEver) {
  openWithoutHelper();
  queue().advance(1h);
  EXPECT_EQ(shown(), MainContent::install);
  expectFlags(false, false, false);
  EXPECT_EQ(messagesSent(), Lines{});
}

TEST_F(HelperLife, ASilentHelperShowsTheInstallScreenForEver) {
  open();
  queue().advance(1h);
  EXPECT_EQ(shown(), MainContent::install);
  expectFlags(false, false, false);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
}

TEST_F(HelperLife, AHelperThatIsSilentAtFirstIsUsedWhenItAnswers) {
  open();
  queue().advance(1h);
  helperAnswers();
  EXPECT_EQ(shown(), MainContent::live);
}

TEST_F(HelperLife, AHelperThatAnswersNoShowsTheInstallScreen) {
  open();
  messagesSent();
  helper().replyIsResponding(false);
  queue().advance(60s);
  EXPECT_EQ(shown(), MainContent::install);
  expectFlags(false, false, false);
  EXPECT_EQ(messagesSent(), Lines{});
}

TEST_F(HelperLife, AHelperOfTheSameVersionShowsTheLiveContent) {
  openWithHelper();
  EXPECT_EQ(shown(), MainContent::live);
  expectFlags(true, false, false);
}

TEST_F(HelperLife, AnOlderHelperShowsTheUpdateScreenAndIsAskedForNothing) {
  openWithHelper("0.9");
  queue().advance(60s);
  EXPECT_EQ(shown(), MainContent::update);
  expectFlags(false, true, false);
  EXPECT_EQ(messagesSent(), Lines{});
}

TEST_F(HelperLife, AVersionInAnotherCaseOrWithPaddingShowsTheUpdateScreen) {
  platform_.bundle.embedHelper("1.0b");
  openWithHelper("1.0B");
  EXPECT_EQ(shown(), MainContent::update);
}

TEST_F(HelperLife, APaddedVersionShowsTheUpdateScreen) {
  openWithHelper("1.0 ");
  EXPECT_EQ(shown(), MainContent::update);
}

TEST_F(HelperLife, AFirstInstallationShowsTheLiveContentWhenTheHelperAnswers) {
  openWithoutHelper();
  press();
  EXPECT_EQ(shown(), MainContent::install);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
  probeIsAnswered();
  EXPECT_EQ(shown(), MainContent::live);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
  helperSends();
  EXPECT_EQ(rows_, 1);
}

TEST_F(HelperLife, AnInstalledHelperThatAnswersNoLeavesTheInstallScreen) {
  openWithoutHelper();
  press();
  probeIsAnswered(false);
  EXPECT_EQ(shown(), MainContent::install);
  press();
  EXPECT_EQ(platform_.helperConnector.count(), 3u);  // the first probe's connection was dropped
  probeIsAnswered();
  EXPECT_EQ(shown(), MainContent::live);
}

TEST_F(HelperLife, ARefusedInstallationLeavesTheInstallScreenForAnotherPress) {
  openWithoutHelper();
  platform_.helperInstaller.blesses = false;
  press();
  EXPECT_EQ(shown(), MainContent::install);
  EXPECT_EQ(timesCleared_, 1);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
  helper().fireInvalidation();
  platform_.helperInstaller.blesses = true;
  press();
  probeIsAnswered();
  EXPECT_EQ(shown(), MainContent::live);
  queue().advance(1s);
  helperSends();
  EXPECT_EQ(rows_, 1);
}

TEST_F(HelperLife, AnInterruptionShowsTheInstallScreenWhoseButtonBringsTheHelperBack) {
  openWithHelper();
  helperSends();
  helperDies();
  EXPECT_EQ(shown(), MainContent::install);
  EXPECT_EQ(timesCleared_, 1);
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 0u);
  messagesSent();
  queue().advance(10s);
  EXPECT_EQ(messagesSent(), Lines{});
  press();
  probeIsAnswered();
  EXPECT_EQ(shown(), MainContent::live);
  helperSends();
  EXPECT_EQ(rows_, 2);
}

TEST_F(HelperLife, AnUpdateRemovesThenInstallsThenSamples) {
  openWithHelper("0.9");
  press();
  EXPECT_TRUE(view_->hideUpdateButton());
  expectFlags(false, false, true);
  queue().advance(999ms);
  EXPECT_EQ(messagesSent(), Lines{});
  queue().advance(1ms);
  EXPECT_EQ(messagesSent(), Lines{"unInstallHelper"});
  EXPECT_EQ(platform_.helperConnector.count(), 2u);
  helperDies();
  queue().advance(999ms);
  EXPECT_EQ(installations(), 0u);
  queue().advance(1ms);
  EXPECT_EQ(installations(), 1u);
  EXPECT_EQ(messagesSent(), Lines{"isResponding"});
  EXPECT_EQ(platform_.helperConnector.count(), 3u);
  probeIsAnswered();
  EXPECT_EQ(shown(), MainContent::live);
  expectFlags(true, false, false);
  EXPECT_EQ(messagesSent(), Lines{kRequest});
  queue().advance(2s);
  EXPECT_EQ(messagesSent(), (Lines{kRequest, kRequest}));
  helperSends();
  EXPECT_EQ(rows_, 1);
}

TEST_F(HelperLife, AnUpdateInstallsEvenWhenTheOldHelperHasNotEnded) {
  openWithHelper("0.9");
  press();
  queue().advance(2s);
  EXPECT_EQ(installations(), 1u);
  helperDies();  // only now
  expectFlags(false, false, false);
  EXPECT_EQ(shown(), MainContent::install);
}

TEST_F(HelperLife, ARefusedUpdateEndsAtTheInstallScreen) {
  openWithHelper("0.9");
  platform_.helperInstaller.blesses = false;
  press();
  queue().advance(2s);
  EXPECT_EQ(shown(), MainContent::install);
  expectFlags(false, false, false);
}

TEST_F(HelperLife, WhileRemovalIsRequestedThePanelsStayWithoutRequestsAndRows) {
  openWithHelper();
  helperSends();
  EXPECT_EQ(rows_, 1);
  uninstall();
  EXPECT_EQ(shown(), MainContent::live);
  expectFlags(true, false, true);
  queue().advance(500ms);
  helperSends();  // of a request that was under way
  EXPECT_EQ(rows_, 1);
  queue().advance(60s);
  EXPECT_EQ(messagesSent(), Lines{"unInstallHelper"});
  EXPECT_EQ(shown(), MainContent::live);
  EXPECT_EQ(timesCleared_, 0);
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 1u);
}

TEST_F(HelperLife, ARemovedHelpersEndClearsTheHistoriesAndShowsTheInstallScreen) {
  openWithHelper();
  helperSends();
  uninstall();
  queue().advance(1s);
  helperDies();
  EXPECT_EQ(shown(), MainContent::install);
  expectFlags(false, false, false);
  EXPECT_EQ(timesCleared_, 1);
  EXPECT_EQ(general().modelPower()->snapshot()->historicPKG.length, 0u);
  messagesSent();
  queue().advance(60s);
  EXPECT_EQ(messagesSent(), Lines{});
}

TEST_F(HelperLife, ARemovedHelperCanBeInstalledAgain) {
  openWithHelper();
  uninstall();
  queue().advance(1s);
  helperDies();
  press();
  probeIsAnswered();
  helperSends();
  EXPECT_EQ(shown(), MainContent::live);
  EXPECT_EQ(rows_, 1);
}

TEST_F(HelperLife, AnInvalidationDuringTheRemovalWithdrawsNothing) {
  openWithHelper();
  uninstall();
  queue().advance(1s);
  helper().fireInvalidation();
  queue().run();
  EXPECT_EQ(shown(), MainContent::live);
  expectFlags(true, false, true);
}

TEST_F(HelperLife, AWithheldAuthorisationStopsTheProgram) {
  openWithoutHelper();
  platform_.authorizationServices.attempt = {-60006, nullptr};
  EXPECT_DEATH(press(), "Authorization not acquired\\.");
}

TEST_F(HelperLife, OnAnotherProcessorNothingReachesTheHelper) {
  platform_.setCpuType(7);
  open();
  press();
  uninstall();
  general().xpcmanager()->updateHelper();
  queue().advance(60s);
  EXPECT_EQ(shown(), MainContent::refusal);
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
  EXPECT_EQ(platform_.authorizationServices.calls, Lines{});
  expectFlags(false, false, false);
}

}  // namespace
}  // namespace pallimo::scenarios
