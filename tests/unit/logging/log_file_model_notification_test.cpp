// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_model_notification.h"

#include <gtest/gtest.h>

#include <set>

#include "base/uuid.h"
#include "fakes/fake_user_notifications.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"

namespace pallimo::logging {
namespace {

using Lines = std::vector<std::string>;

class LogFileModelNotificationTest : public testing::Test {
 protected:
  std::shared_ptr<LogFileModelNotification> create() {
    return LogFileModelNotification::create({centre_, random_, console_});
  }
  ports::UserNotification onlyAdded() const {
    const auto added = centre_.added();
    EXPECT_EQ(added.size(), 1u);
    return added.empty() ? ports::UserNotification{} : added.front();
  }
  std::set<std::string> identifiers() const {
    std::set<std::string> found;
    for (const auto& each : centre_.added()) found.insert(each.identifier);
    return found;
  }

  fakes::FakeUserNotifications centre_;
  fakes::ScriptedRandomNumbers random_;
  fakes::RecordingConsole console_;
};

TEST_F(LogFileModelNotificationTest, BecomesTheDelegateAndThenAsksForAlertAndSound) {
  const auto notification = create();
  EXPECT_EQ(centre_.calls(), (Lines{"setDelegate", "requestAuthorization 6"}));
  EXPECT_EQ(centre_.delegate(), notification);
}

TEST_F(LogFileModelNotificationTest, PostsNothingByBeingCreated) {
  const auto notification = create();
  centre_.answer(true);
  EXPECT_TRUE(centre_.added().empty());
}

TEST_F(LogFileModelNotificationTest, WritesTheErrorOfTheAnswer) {
  const auto notification = create();
  centre_.answer(false, "Notifications are not allowed for this application");
  EXPECT_EQ(console_.lines(), Lines{"Error: Notifications are not allowed for this application"});
}

TEST_F(LogFileModelNotificationTest, WritesAnErrorAlsoWhenTheUserHasAllowed) {
  const auto notification = create();
  centre_.answer(true, "half a success");
  EXPECT_EQ(console_.lines(), Lines{"Error: half a success"});
}

TEST_F(LogFileModelNotificationTest, WritesAnErrorWithoutADescription) {
  const auto notification = create();
  centre_.answer(false, "");
  EXPECT_EQ(console_.lines(), Lines{"Error: "});
}

TEST_F(LogFileModelNotificationTest, IsSilentAboutARefusal) {
  const auto notification = create();
  centre_.answer(false);
  EXPECT_TRUE(console_.lines().empty());
}

TEST_F(LogFileModelNotificationTest, IsSilentWhenTheUserAllows) {
  const auto notification = create();
  centre_.answer(true);
  EXPECT_TRUE(console_.lines().empty());
}

TEST_F(LogFileModelNotificationTest, WritesTheErrorOfAnAnswerThatComesAfterItsEnd) {
  create().reset();
  centre_.answer(false, "too late");
  EXPECT_EQ(console_.lines(), Lines{"Error: too late"});
}

TEST_F(LogFileModelNotificationTest, IsNotKeptAliveByTheCentre) {
  std::weak_ptr<LogFileModelNotification> notification = create();
  EXPECT_TRUE(notification.expired());
  EXPECT_EQ(centre_.delegate(), nullptr);
}

TEST_F(LogFileModelNotificationTest, PostsBeforeTheUserHasAnswered) {
  create()->notifyLoggingStarted();
  EXPECT_EQ(centre_.added().size(), 1u);
}

TEST_F(LogFileModelNotificationTest, PostsAlsoWhenTheUserHasRefused) {
  const auto notification = create();
  centre_.answer(false);
  notification->notifyLoggingStarted();
  notification->notifyLoggingEnded("/a.csv");
  EXPECT_EQ(centre_.added().size(), 2u);
}

TEST_F(LogFileModelNotificationTest, PostsAlsoWhenTheAnswerWasAnError) {
  const auto notification = create();
  centre_.answer(false, "no");
  notification->notifyLoggingEnded("/a.csv");
  EXPECT_EQ(centre_.added().size(), 1u);
}

TEST_F(LogFileModelNotificationTest, PresentsBannerAndSoundWhateverIsShown) {
  const auto notification = create();
  EXPECT_EQ(centre_.delegate()->willPresentNotification({}), 18u);
  notification->notifyLoggingStarted();
  EXPECT_EQ(centre_.delegate()->willPresentNotification(onlyAdded()), 18u);
}

TEST_F(LogFileModelNotificationTest, SaysThatLoggingHasStarted) {
  create()->notifyLoggingStarted();
  EXPECT_EQ(onlyAdded().title, "Logging started");
  EXPECT_EQ(onlyAdded().subtitle, "The log file will be written when logging is stopped.");
}

TEST_F(LogFileModelNotificationTest, SaysWhereTheLogWent) {
  create()->notifyLoggingEnded("/home/ann/Desktop/PwrData 2024-03-05 at 14.02.33.csv");
  EXPECT_EQ(onlyAdded().title, "Logging ended");
  EXPECT_EQ(onlyAdded().subtitle, "Saved at: /home/ann/Desktop/PwrData 2024-03-05 at 14.02.33.csv");
}

TEST_F(LogFileModelNotificationTest, HandsThePathOnAsItIs) {
  const std::string path("/tmp/a\nb<&>\xFF\0c.csv", 16);
  create()->notifyLoggingEnded(path);
  EXPECT_EQ(onlyAdded().subtitle, "Saved at: " + path);
}

TEST_F(LogFileModelNotificationTest, NamesAlsoAnEmptyPath) {
  create()->notifyLoggingEnded("");
  EXPECT_EQ(onlyAdded().subtitle, "Saved at: ");
}

TEST_F(LogFileModelNotificationTest, BuildsBothNoticesTheSameWay) {
  const auto notification = create();
  notification->notifyLoggingStarted();
  notification->notifyLoggingEnded("/a.csv");
  ASSERT_EQ(centre_.added().size(), 2u);
  for (const auto& each : centre_.added()) {
    EXPECT_TRUE(each.playsDefaultSound) << each.title;
    EXPECT_EQ(each.delay, 0.05) << each.title;
  }
}

TEST_F(LogFileModelNotificationTest, TakesTheIdentifierFromTwoRandomNumbers) {
  fakes::ScriptedRandomNumbers random{0x0123456789ABCDEF, 0xFEDCBA9876543210};
  LogFileModelNotification::create({centre_, random, console_})->notifyLoggingStarted();
  EXPECT_EQ(onlyAdded().identifier, "01234567-89AB-4DEF-BEDC-BA9876543210");
}

TEST_F(LogFileModelNotificationTest, GivesStartAndEndDistinctIdentifiers) {
  const auto notification = create();
  notification->notifyLoggingStarted();
  notification->notifyLoggingEnded("/a.csv");
  EXPECT_EQ(identifiers().size(), 2u);
}

TEST_F(LogFileModelNotificationTest, GivesTwoLogsEndedInQuickSuccessionDistinctIdentifiers) {
  const auto notification = create();
  notification->notifyLoggingEnded("/a.csv");
  notification->notifyLoggingEnded("/a.csv");
  EXPECT_EQ(centre_.texts(),
            (Lines{"Logging ended: Saved at: /a.csv", "Logging ended: Saved at: /a.csv"}));
  EXPECT_EQ(identifiers().size(), 2u);
}

}  // namespace
}  // namespace pallimo::logging
