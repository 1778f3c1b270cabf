// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_more_button.h"

#include <gtest/gtest.h>

#include <thread>

#include "fakes/manual_main_queue.h"

namespace pallimo::modules {
namespace {

class ModuleModelMoreButtonTest : public testing::Test {
 protected:
  fakes::ManualMainQueue queue_;
  std::shared_ptr<ModuleModelMoreButton> model_ = ModuleModelMoreButton::create(queue_);
  int published_ = 0;
  base::Subscription subscription_ = model_->observe([this] { ++published_; });
};

TEST_F(ModuleModelMoreButtonTest, PublishesNothingByItself) {
  queue_.run();
  EXPECT_EQ(published_, 0);
}

TEST_F(ModuleModelMoreButtonTest, PublishesLaterFromTheMainQueueAndNeverInsideTheCall) {
  model_->notifyChange();
  EXPECT_EQ(published_, 0);
  queue_.run();
  EXPECT_EQ(published_, 1);
}

TEST_F(ModuleModelMoreButtonTest, MayBeToldOnAnyThread) {
  std::thread([this] { model_->notifyChange(); }).join();
  EXPECT_EQ(published_, 0);
  const std::thread::id main = std::this_thread::get_id();
  std::thread::id publishing;
  const auto second = model_->observe([&] { publishing = std::this_thread::get_id(); });
  queue_.run();
  EXPECT_EQ(published_, 1);
  EXPECT_EQ(publishing, main);
}

TEST_F(ModuleModelMoreButtonTest, TwoQuickCallsPublishTwiceInOrder) {
  std::vector<std::string> happened;
  const auto second = model_->observe([&] { happened.push_back("published"); });
  model_->notifyChange();
  queue_.async([&] { happened.push_back("between"); });
  model_->notifyChange();
  queue_.run();
  EXPECT_EQ(happened, (std::vector<std::string>{"published", "between", "published"}));
}

TEST_F(ModuleModelMoreButtonTest, EveryObserverHearsEachPublication) {
  int others = 0;
  const auto other = model_->observe([&] { ++others; });
  model_->notifyChange();
  queue_.run();
  EXPECT_EQ(published_, 1);
  EXPECT_EQ(others, 1);
}

TEST_F(ModuleModelMoreButtonTest, AModelThatIsReleasedMeanwhilePublishesNothing) {
  model_->notifyChange();
  const std::weak_ptr<ModuleModelMoreButton> watched = model_;
  model_.reset();
  EXPECT_TRUE(watched.expired());
  queue_.run();
  EXPECT_EQ(published_, 0);
}

TEST_F(ModuleModelMoreButtonTest, ACallThroughALinkToAReleasedModelHasNoEffect) {
  const std::weak_ptr<helper_link::MoreButtonModelDelegate> link = model_;
  model_.reset();
  EXPECT_EQ(link.lock(), nullptr);
  EXPECT_EQ(queue_.queuedTasks(), 0u);
}

}  // namespace
}  // namespace pallimo::modules
