// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/notify_message.h"

#include <gtest/gtest.h>

#include "unit/adapters/linux/notices/desktop_notifications_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using desktop_test::NotifyCall;
using Hints = std::map<std::string, std::string>;

NotifyCall notify(std::string_view title, std::string_view subtitle,
                  NoticeSound sound = NoticeSound::kDefault) {
  return desktop_test::readNotify(*makeNotify(title, subtitle, sound));
}

TEST(NotifyMessage, GoesToTheDesktopsNotificationService) {
  const auto message = makeNotify("t", "s", NoticeSound::kDefault);
  EXPECT_STREQ(dbus_message_get_destination(message.get()), "org.freedesktop.Notifications");
  EXPECT_STREQ(dbus_message_get_path(message.get()), "/org/freedesktop/Notifications");
  EXPECT_STREQ(dbus_message_get_interface(message.get()), "org.freedesktop.Notifications");
  EXPECT_STREQ(dbus_message_get_member(message.get()), "Notify");
  EXPECT_STREQ(dbus_message_get_signature(message.get()), "susssasa{sv}i");
}

TEST(NotifyMessage, AsksForAReply) {
  const auto message = makeNotify("t", "s", NoticeSound::kDefault);
  EXPECT_FALSE(dbus_message_get_no_reply(message.get()));
}

TEST(NotifyMessage, LetsTheBusStartTheService) { EXPECT_TRUE(notify("t", "s").mayStartService); }

TEST(NotifyMessage, NamesTheApp) { EXPECT_EQ(notify("t", "s").appName, "Pallimo"); }

TEST(NotifyMessage, ReplacesNoNotice) { EXPECT_EQ(notify("t", "s").replacesId, 0u); }

TEST(NotifyMessage, HasTitleAndSubtitle) {
  const auto call = notify("Logging ended", "Saved at: /a.csv");
  EXPECT_EQ(call.summary, "Logging ended");
  EXPECT_EQ(call.body, "Saved at: /a.csv");
}

TEST(NotifyMessage, HasNoIconAndNoButtons) {
  const auto call = notify("t", "s");
  EXPECT_EQ(call.appIcon, "");
  EXPECT_EQ(call.actions, 0);
}

TEST(NotifyMessage, LetsTheDesktopDecideWhenItGoes) {
  EXPECT_EQ(notify("t", "s").expireTimeout, -1);
}

TEST(NotifyMessage, AsksForASoundByName) {
  EXPECT_EQ(notify("t", "s", NoticeSound::kDefault).hints,
            (Hints{{"sound-name", "dialog-information"}}));
}

TEST(NotifyMessage, AsksForSilence) {
  EXPECT_EQ(notify("t", "s", NoticeSound::kNone).hints, (Hints{{"suppress-sound", "true"}}));
}

TEST(NotifyMessage, HasMarkupInTheBodyOnly) {
  const auto call = notify("<&>", "<&>");
  EXPECT_EQ(call.summary, "<&>");
  EXPECT_EQ(call.body, "&lt;&amp;&gt;");
}

TEST(NotifyMessage, TakesAnyBytes) {
  std::string every;
  for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
  EXPECT_EQ(notify(every, every).signature, "susssasa{sv}i");
}

}  // namespace
}  // namespace pallimo::adapters::linux
