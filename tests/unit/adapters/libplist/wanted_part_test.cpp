// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/wanted_part.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace pallimo::adapters::libplist {
namespace {

using ports::Wanted;

const Wanted kWanted{{"a", {{"b"}}}, {"c"}};

const std::string kPrologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

std::string part(std::string_view bytes, const Wanted& wanted = kWanted) {
  std::string scratch;
  return std::string(wantedPart(bytes, wanted, scratch));
}

/// Whether the bytes are handed on as they are, without a copy.
bool isLeftAlone(const std::string& bytes, const Wanted& wanted = kWanted) {
  std::string scratch;
  return wantedPart(bytes, wanted, scratch).data() == bytes.data();
}

TEST(WantedPart, LeavesOutTheEntriesThatNobodyLooksAt) {
  EXPECT_EQ(part("<dict><key>x</key><array><true/></array><key>c</key><true/></dict>"),
            "<dict><key>c</key><true/></dict>");
  EXPECT_EQ(part("<dict><key>c</key><true/><key>x</key><true/></dict>"),
            "<dict><key>c</key><true/></dict>");
  EXPECT_EQ(part("<dict><key>x</key><true/></dict>"), "<dict></dict>");
}

TEST(WantedPart, LooksIntoDictionariesAndArraysOfThem) {
  EXPECT_EQ(part("<dict><key>a</key><dict><key>b</key><true/><key>x</key><true/></dict></dict>"),
            "<dict><key>a</key><dict><key>b</key><true/></dict></dict>");
  EXPECT_EQ(part("<dict><key>a</key><array><dict><key>x</key><true/></dict><array><dict>"
                 "<key>x</key><true/><key>b</key><true/></dict></array></array></dict>"),
            "<dict><key>a</key><array><dict></dict><array><dict><key>b</key><true/></dict></array>"
            "</array></dict>");
}

TEST(WantedPart, KeepsAWantedValueWhole) {
  const std::string whole =
      "<dict><key>c</key><array><dict><key>x</key><true/></dict></array></dict>";
  EXPECT_EQ(part(whole), whole);
}

TEST(WantedPart, KeepsAnotherValueWhereADictionaryWasExpected) {
  EXPECT_EQ(part("<dict><key>a</key><string>x</string></dict>"),
            "<dict><key>a</key><string>x</string></dict>");
  EXPECT_EQ(part("<true/>"), "<true/>");
}

TEST(WantedPart, KeepsWhatStandsAroundTheValue) {
  EXPECT_EQ(part(kPrologue + "<dict><key>x</key><true/></dict>\n</plist>\nmore"),
            kPrologue + "<dict></dict>\n</plist>\nmore");
}

TEST(WantedPart, IsTheWholeWhereEverythingIsWanted) {
  EXPECT_TRUE(isLeftAlone("<dict><key>x</key><true/></dict>", {}));
}

TEST(WantedPart, IsTheWholeWhereAnythingInItIsNotPlain) {
  for (const std::string unusual :
       {"<key>x</key><data>AA==</data>", "<key>x</key>", "<key>x</key><key>y</key><true/>",
        "<key>x</key><array><key>y</key></array>", "<key>a</key><array><key>y</key></array>",
        "<key>c</key><data>AA==</data>", "<true/>", "<key>x&amp;</key><true/>", "text"}) {
    EXPECT_TRUE(isLeftAlone("<dict><key>x</key><true/>" + unusual + "</dict>")) << unusual;
  }
}

TEST(WantedPart, IsTheWholeOfADocumentThatBeginsOrEndsUnusually) {
  for (const std::string bytes :
       {"<?xml version='1.0'?><dict><key>x</key><true/></dict>",
        "<plist><dict><key>x</key><true/></dict></plist>", "<dict><key>x</key><true/>", "text", "",
        "\xEF\xBB\xBF<dict><key>x</key><true/></dict>"}) {
    EXPECT_TRUE(isLeftAlone(bytes)) << bytes;
  }
}

TEST(WantedPart, IsTheWholeOfArraysInOneAnotherWithoutEnd) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<array>";
  EXPECT_TRUE(isLeftAlone("<dict><key>a</key>" + deep));
  EXPECT_TRUE(isLeftAlone("<dict><key>x</key>" + deep));
}

// Whoever counts only what is left would let a document pass that is refused as a whole.
TEST(WantedPart, IsTheWholeOfADocumentOfMoreThanAMillionElements) {
  const auto entries = [](int count) {
    std::string text = "<dict>";
    for (int i = 0; i < count; ++i) text += "<key>x</key><true/>";
    return text + "<key>a</key><array></array></dict>";
  };
  EXPECT_FALSE(isLeftAlone(entries(499'998)));
  EXPECT_TRUE(isLeftAlone(entries(499'999)));
}

}  // namespace
}  // namespace pallimo::adapters::libplist
