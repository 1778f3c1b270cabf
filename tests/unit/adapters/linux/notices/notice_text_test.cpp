// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/notice_text.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::linux {
namespace {

const std::string kAllKinds("a\n\t\r\x1B\x7F\0b", 8);

TEST(PlainText, LeavesTextAlone) {
  EXPECT_EQ(plainText("Logging <ended> & \xC3\xA9"), "Logging <ended> & \xC3\xA9");
}

TEST(PlainText, RepairsWhatIsNoUtf8) { EXPECT_EQ(plainText("a\xFFz"), "a\xEF\xBF\xBDz"); }

TEST(PlainText, ReplacesEveryControlCharacter) {
  const std::string_view mark = "\xEF\xBF\xBD";
  std::string expected = "a";
  for (int count = 0; count < 6; ++count) expected += mark;
  EXPECT_EQ(plainText(kAllKinds), expected + "b");
}

TEST(MarkupText, TurnsWhatCouldBeATagIntoText) {
  EXPECT_EQ(markupText("/a<b>&amp;</b>"), "/a&lt;b&gt;&amp;amp;&lt;/b&gt;");
}

TEST(MarkupText, RepairsWhatIsNoUtf8) {
  EXPECT_EQ(markupText("/\xC3/\xE2\x82"), "/\xEF\xBF\xBD/\xEF\xBF\xBD");
}

TEST(MarkupText, KeepsLineEndsAndTabsOfTheControlCharacters) {
  EXPECT_EQ(markupText(kAllKinds),
            "a\n\t\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "b");
}

TEST(NoticeLine, PutsTheTextsOnOneLine) {
  EXPECT_EQ(noticeLine("Logging ended", "Saved at: /a.csv"), "Logging ended: Saved at: /a.csv");
}

TEST(NoticeLine, WritesControlCharactersVisibly) {
  EXPECT_EQ(noticeLine("t\n", kAllKinds), "t\\n: a\\n\\x09\\r\\x1B\\x7F\\x00b");
}

TEST(NoticeLine, LeavesOtherBytesAlone) {
  EXPECT_EQ(noticeLine("t", "/\\<&>\xFF\xC3\xA9"), "t: /\\<&>\xFF\xC3\xA9");
}

TEST(NoticeLine, KeepsEmptyTexts) { EXPECT_EQ(noticeLine("", ""), ": "); }

}  // namespace
}  // namespace pallimo::adapters::linux
