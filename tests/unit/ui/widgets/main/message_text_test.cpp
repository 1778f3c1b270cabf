// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/message_text.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>

#include "ui/widgets/basics/fonts.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class MessageTextTest : public testing::Test {
 protected:
  MessageTextTest() : application_(testApplication()), text_(nullptr) {}

  QApplication& application_;
  MessageText text_;
};

TEST_F(MessageTextTest, KeepsLineBreaksAlsoAtBeginningAndEnd) {
  text_.setMessage("\nshort\n");
  EXPECT_EQ(text_.lines(), QStringList({"", "short", ""}));
  EXPECT_EQ(text_.text(), "\nshort\n");
  EXPECT_EQ(text_.height(), 3 * MessageText::kLineHeight);
}

TEST_F(MessageTextTest, BreaksLinesThatAreTooLongBetweenWords) {
  const QString message = "Before to start you need to install the Pallimo Powermetrics Helper";
  text_.setMessage(message);
  EXPECT_GT(text_.lines().size(), 1);
  EXPECT_EQ(text_.lines().join(' '), message);
  for (const QString& line : text_.lines()) {
    EXPECT_LE(QFontMetricsF(systemFont(text_size::kBody)).horizontalAdvance(line),
              MessageText::kWidth);
  }
}

TEST_F(MessageTextTest, IsReadAloudWithoutItsEmptyLines) {
  text_.setMessage("\nThis is\na text\n");
  EXPECT_EQ(text_.accessibleName(), "This is a text");
}

}  // namespace
}  // namespace pallimo::ui::widgets
