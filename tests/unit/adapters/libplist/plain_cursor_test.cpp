// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/plain_cursor.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace pallimo::adapters::libplist {
namespace {

const std::string kRest = "<rest>";

/// Whether all of `value` is taken, and nothing behind it.
bool isPlain(std::string_view value) {
  const std::string bytes = std::string(value) + kRest;
  PlainCursor cursor(bytes);
  return cursor.takeValue() && cursor.at() == value.size();
}

std::string array(std::size_t levels) {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) text += "<array>";
  for (std::size_t i = 0; i < levels; ++i) text += "</array>";
  return text;
}

TEST(PlainCursor, TakesNumbersTextsBooleansAndDates) {
  for (const std::string_view value :
       {"<integer>0</integer>", "<integer>-12</integer>", "<integer>007</integer>",
        "<integer>123456789012345678</integer>", "<real>1</real>", "<real>-1.5</real>",
        "<real>1.39054e+09</real>", "<real>2.E-3</real>", "<string></string>",
        "<string>a > b \"c\" \xC3\xA4</string>", "<true/>", "<false/>",
        "<date>2026-07-09T14:26:48Z</date>"}) {
    EXPECT_TRUE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, LeavesUnusualNumbersToLibplist) {
  for (const std::string_view value :
       {"<integer></integer>", "<integer/>", "<integer>-</integer>", "<integer>+1</integer>",
        "<integer>0x1F</integer>", "<integer> 1</integer>", "<integer>1 </integer>",
        "<integer>2.5</integer>", "<integer>1234567890123456789</integer>", "<real></real>",
        "<real>.5</real>", "<real>nan</real>", "<real>1e</real>", "<real>1e+</real>",
        "<real>1,5</real>", "<real> 1</real>"}) {
    EXPECT_FALSE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, LeavesOtherKindsAndUnusualTagsToLibplist) {
  for (const std::string_view value :
       {"<data>AAAA</data>", "<true></true>", "<true />", "<string/>", "<dict/>", "<array/>",
        "<string a=\"b\">c</string>", "<String>c</String>", "<key>a</key>", "<bogus/>", "text",
        "</dict>", "</array>", ""}) {
    EXPECT_FALSE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, LeavesTextsToLibplistThatAreMoreThanTheirLetters) {
  for (const std::string_view value :
       {"<string>a &amp; b</string>", "<string><![CDATA[a]]></string>",
        "<string>a<!-- b --></string>", "<string>a</strin>", "<string>a", "<string>"}) {
    EXPECT_FALSE(isPlain(value)) << value;
  }
  EXPECT_FALSE(isPlain(std::string_view("<string>a\0b</string>", 20)));
}

TEST(PlainCursor, LeavesOtherDatesToLibplist) {
  for (const std::string_view value :
       {"<date></date>", "<date>2026-07-09</date>", "<date>2026-7-9T14:26:48Z</date>",
        "<date>2026-07-09T14:26:48</date>", "<date>2026-07-09 14:26:48Z</date>"}) {
    EXPECT_FALSE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, TakesContainersWithSpaceAndCommentsBetweenTheirValues) {
  for (const std::string_view value :
       {"<dict></dict>", "<array> </array>", "<dict>\n\t<key>a</key> \r\n<true/>\n</dict>",
        "<array><integer>1</integer><real>2</real></array>",
        "<dict><key>a</key><array><dict><key>b</key><true/></dict></array></dict>",
        "<dict><!-- <key>a</key> --><key>b</key><!----><true/><!-- > --></dict>",
        " <!-- a --> <true/>"}) {
    EXPECT_TRUE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, LeavesContainersToLibplistInWhichSomethingIsMissingOrMisplaced) {
  for (const std::string_view value :
       {"<dict><true/></dict>", "<dict><key>a</key></dict>", "<array><key>a</key></array>",
        "<dict><key>a</key><key>b</key><true/></dict>", "<dict>text</dict>", "<array>text</array>",
        "<dict></array>", "<array></dict>", "<dict>", "<array><true/>", "<array><!-- </array>",
        "<array><!--></array>"}) {
    EXPECT_FALSE(isPlain(value)) << value;
  }
}

TEST(PlainCursor, LeavesWhatIsNestedDeepToLibplist) {
  EXPECT_TRUE(isPlain(array(PlainCursor::kMaxNesting)));
  EXPECT_FALSE(isPlain(array(PlainCursor::kMaxNesting + 1)));
}

TEST(PlainCursor, TakesAKeyWithItsTags) {
  const std::string bytes = "<key>freq_hz</key><real>1</real>";
  PlainCursor cursor(bytes);
  EXPECT_EQ(cursor.takeKey(), "freq_hz");
  EXPECT_EQ(cursor.at(), bytes.find("<real>"));
}

TEST(PlainCursor, LeavesUnusualKeysToLibplist) {
  for (const std::string_view key : {"<key>a&amp;b</key>", "<key/>", "<key >a</key>", "<key>a",
                                     "<key>a<!-- b --></key>", "<string>a</string>"}) {
    EXPECT_FALSE(PlainCursor(key).takeKey()) << key;
  }
}

TEST(PlainCursor, StaysWhereItIsWhereAWordIsNot) {
  PlainCursor cursor("<dict></dict>");
  EXPECT_FALSE(cursor.take("<array>"));
  EXPECT_TRUE(cursor.take("<dict>"));
  EXPECT_TRUE(cursor.take("</dict>"));
  EXPECT_FALSE(cursor.take("</dict>"));
}

TEST(PlainCursor, CountsEachKeyAndEachValue) {
  PlainCursor cursor("<dict><key>a</key><array><true/><true/></array></dict>");
  ASSERT_TRUE(cursor.takeValue());
  EXPECT_EQ(cursor.elements(), 5U);
}

}  // namespace
}  // namespace pallimo::adapters::libplist
