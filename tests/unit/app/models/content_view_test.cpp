// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/content_view.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_platform.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using ui::MainContent;

/// A view on a helper that is the test.
class ContentViewTest : public testing::Test {
 protected:
  ContentViewTest() { platform_.backgroundQueue.runAtOnce(); }
  ~ContentViewTest() override { platform_.mainQueue.run(); }

  ContentView& view() {
    if (!general_) general_.emplace(platform_.platform());
    if (!view_) view_.emplace(platform_.mainQueue, *general_);
    return *view_;
  }
  void helperAnswers(const std::string& version) {
    view();
    platform_.helperConnector.latest()->replyIsResponding(true);
    platform_.helperConnector.latest()->replyVersion(version);
    platform_.mainQueue.run();
  }
  std::string_view button() {
    return ui::mainContentText(view().content(), view().hideUpdateButton()).button;
  }

  fakes::FakePlatform platform_;
  std::optional<GeneralModel> general_;
  std::optional<ContentView> view_;
};

TEST_F(ContentViewTest, CreatesItsModelWhichAsksTheHelper) {
  EXPECT_EQ(general_, std::nullopt);
  const auto model = view().contentModel();
  EXPECT_EQ(general_->xpcmanager()->contentModelDelegate(), model);
  EXPECT_EQ(platform_.helperConnector.journal().take().back(), "-> isResponding");
}

TEST_F(ContentViewTest, KeepsItsModelForItsLife) {
  const std::weak_ptr<ContentModel> model = view().contentModel();
  platform_.mainQueue.advance(10s);
  EXPECT_EQ(view().contentModel(), model.lock());
  view_.reset();
  EXPECT_TRUE(model.expired());
}

TEST_F(ContentViewTest, ShowsTheInstallScreenUntilTheHelperAnswers) {
  EXPECT_EQ(view().content(), MainContent::install);
  EXPECT_EQ(button(), "Install Helper");
}

TEST_F(ContentViewTest, GivesWayToTheLiveContentWithoutThePressOfAButton) {
  int drawn = 0;
  const auto subscription = view().contentModel()->observe([&] { ++drawn; });
  helperAnswers("1.0");
  EXPECT_GT(drawn, 0);
  EXPECT_EQ(view().content(), MainContent::live);
  EXPECT_EQ(platform_.console.lines(), std::vector<std::string>{});
}

TEST_F(ContentViewTest, ShowsTheUpdateScreenForAnotherVersion) {
  helperAnswers("0.9");
  EXPECT_EQ(view().content(), MainContent::update);
  EXPECT_EQ(button(), "Update Helper");
  EXPECT_FALSE(view().hideUpdateButton());
}

TEST_F(ContentViewTest, TheInstallButtonInstallsAtOnce) {
  EXPECT_EQ(view().press(), MainContent::install);
  EXPECT_EQ(platform_.helperInstaller.calls,
            std::vector<std::string>{"bless com.ostrovane.powermetrics"});
  EXPECT_FALSE(view().hideUpdateButton());
}

TEST_F(ContentViewTest, TheInstallButtonStaysForAnotherPress) {
  platform_.helperInstaller.blesses = false;
  view().press();
  platform_.mainQueue.run();
  EXPECT_EQ(button(), "Install Helper");
  view().press();
  EXPECT_EQ(platform_.helperInstaller.calls.size(), 2u);
}

TEST_F(ContentViewTest, TheUpdateButtonIsHiddenAtOnce) {
  helperAnswers("0.9");
  EXPECT_EQ(view().press(), MainContent::update);
  EXPECT_TRUE(view().hideUpdateButton());
  EXPECT_EQ(view().content(), MainContent::update);
  EXPECT_EQ(button(), "");
}

TEST_F(ContentViewTest, TheUpdateButtonIsHiddenBeforeTheManagerIsAsked) {
  helperAnswers("0.9");
  bool wasHidden = false;
  platform_.backgroundQueue.setOnAsync([&] { wasHidden = view().hideUpdateButton(); });
  view().press();
  EXPECT_TRUE(wasHidden);
}

TEST_F(ContentViewTest, AnUpdateIsAskedForOnceHoweverOftenItIsPressed) {
  helperAnswers("0.9");
  view().press();
  EXPECT_EQ(view().press(), std::nullopt);
  EXPECT_EQ(view().press(), std::nullopt);
  platform_.mainQueue.advance(10s);
  EXPECT_EQ(platform_.helperInstaller.calls.size(), 1u);
}

TEST_F(ContentViewTest, TheUpdateButtonStaysHiddenEvenIfTheUpdateFails) {
  helperAnswers("0.9");
  platform_.helperInstaller.blesses = false;
  view().press();
  platform_.mainQueue.advance(10s);
  general_->xpcmanager()->setUpdateNeeded(true);
  EXPECT_EQ(view().content(), MainContent::update);
  EXPECT_EQ(button(), "");
  EXPECT_EQ(view().press(), std::nullopt);
}

TEST_F(ContentViewTest, ANewViewShowsTheUpdateButtonAgain) {
  helperAnswers("0.9");
  view().press();
  view_.reset();
  EXPECT_EQ(button(), "Update Helper");
}

TEST_F(ContentViewTest, AFailedUpdateLeavesTheInstallButton) {
  helperAnswers("0.9");
  platform_.helperInstaller.blesses = false;
  view().press();
  platform_.mainQueue.advance(10s);
  EXPECT_EQ(button(), "Install Helper");
  platform_.helperInstaller.blesses = true;
  EXPECT_EQ(view().press(), MainContent::install);
}

TEST_F(ContentViewTest, LiveContentHasNothingToPress) {
  helperAnswers("1.0");
  EXPECT_EQ(view().press(), std::nullopt);
  EXPECT_EQ(platform_.helperInstaller.calls, std::vector<std::string>{});
}

TEST_F(ContentViewTest, AnotherProcessorShowsTheRefusalAndHasNothingToPress) {
  platform_.setCpuType(7);
  EXPECT_EQ(view().content(), MainContent::refusal);
  EXPECT_EQ(view().press(), std::nullopt);
  platform_.mainQueue.advance(10s);
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
  EXPECT_EQ(platform_.authorizationServices.calls, std::vector<std::string>{});
}

}  // namespace
}  // namespace pallimo::app
