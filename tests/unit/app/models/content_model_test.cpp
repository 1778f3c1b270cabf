// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/content_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>

#include "fakes/fake_platform.h"

namespace pallimo::app {
namespace {

class ContentModelTest : public testing::Test {
 protected:
  GeneralModel& general() {
    if (!general_) general_.emplace(platform_.platform());
    return *general_;
  }
  std::shared_ptr<ContentModel> create() {
    return ContentModel::create(platform_.mainQueue, general());
  }

  fakes::FakePlatform platform_;
  std::optional<GeneralModel> general_;
};

TEST_F(ContentModelTest, RegistersWithTheManagerAndAsksTheHelper) {
  const auto model = create();
  EXPECT_EQ(general().xpcmanager()->contentModelDelegate(), model);
  EXPECT_EQ(platform_.helperConnector.journal().take().back(), "-> isResponding");
}

TEST_F(ContentModelTest, OnAnotherProcessorItExistsAndDoesNothing) {
  platform_.setCpuType(7);
  const auto model = create();
  EXPECT_NE(model, nullptr);
  EXPECT_EQ(general().xpcmanager()->contentModelDelegate(), nullptr);
  EXPECT_EQ(platform_.helperConnector.count(), 0u);
}

TEST_F(ContentModelTest, WithoutALinkNothingIsAskedAndTheManagerStaysUnauthorised) {
  platform_.helperConnector.setConnects(false);
  const auto model = create();
  platform_.mainQueue.run();
  EXPECT_FALSE(general().xpcmanager()->isAuthorized());
  const auto said = platform_.helperConnector.journal().take();
  EXPECT_EQ(std::count(said.begin(), said.end(), "-> isResponding"), 0);
}

TEST_F(ContentModelTest, TheManagersAnswerIsPublished) {
  const auto model = create();
  bool isAuthorized = false;
  const auto subscription =
      model->observe([&] { isAuthorized = general().xpcmanager()->isAuthorized(); });
  platform_.helperConnector.latest()->replyIsResponding(true);
  platform_.helperConnector.latest()->replyVersion("1.0");
  platform_.mainQueue.run();
  EXPECT_TRUE(isAuthorized);
}

TEST_F(ContentModelTest, UpdatePublishesLaterFromTheMainQueue) {
  const auto model = create();
  int published = 0;
  const auto subscription = model->observe([&] { ++published; });
  std::thread([&] { model->update(); }).join();
  EXPECT_EQ(published, 0);
  platform_.mainQueue.run();
  EXPECT_EQ(published, 1);
}

TEST_F(ContentModelTest, AQueuedPublicationDoesNotKeepTheModelAlive) {
  auto model = create();
  int published = 0;
  const auto subscription = model->observe([&] { ++published; });
  model->update();
  const std::weak_ptr<ContentModel> weak = model;
  model.reset();
  EXPECT_TRUE(weak.expired());
  platform_.mainQueue.run();
  EXPECT_EQ(published, 0);
}

}  // namespace
}  // namespace pallimo::app
