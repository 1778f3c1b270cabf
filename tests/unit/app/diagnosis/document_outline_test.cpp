// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/document_outline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"

namespace pallimo::app {
namespace {

using Outline = std::vector<OutlineEntry>;

Outline outline(const std::string& value) {
  const std::string text =
      R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + value + "</plist>";
  const base::Bytes bytes(text.begin(), text.end());
  const auto document = adapters::libplist::LibplistReader().read(bytes);
  return document ? outlineOf(*document) : Outline();
}

TEST(DocumentOutline, ListsKeysWithTheirKindAndSizeInTheirOrder) {
  EXPECT_EQ(outline("<dict><key>b</key><integer>1</integer><key>a</key><string>four</string>"
                    "<key>c</key><true/><key>d</key><data>AAAA</data>"
                    "<key>e</key><date>2024-01-01T00:00:00Z</date><key>f</key><real>2</real>"
                    "<key>g</key><array/><key>h</key><dict/></dict>"),
            (Outline{{"b", "number", 1, 0},
                     {"a", "text", 1, 4},
                     {"c", "boolean", 1, 0},
                     {"d", "data", 1, 3},
                     {"e", "date", 1, 0},
                     {"f", "number", 1, 0},
                     {"g", "list", 1, 0},
                     {"h", "dictionary", 1, 0}}));
}

TEST(DocumentOutline, NamesWhatLiesInsideByItsPath) {
  EXPECT_EQ(outline("<dict><key>gpu</key><dict><key>freq_hz</key><real>1</real></dict></dict>"),
            (Outline{{"gpu", "dictionary", 1, 1}, {"gpu/freq_hz", "number", 1, 0}}));
}

TEST(DocumentOutline, TakesTheElementsOfAListTogether) {
  EXPECT_EQ(outline("<dict><key>l</key><array>"
                    "<dict><key>name</key><string>A</string></dict>"
                    "<dict><key>name</key><string>long</string><key>x</key><true/></dict>"
                    "<integer>3</integer></array></dict>"),
            (Outline{{"l", "list", 1, 3}, {"l[]/name", "text", 2, 4}, {"l[]/x", "boolean", 1, 0}}));
}

TEST(DocumentOutline, SaysWhereTheKindsDiffer) {
  EXPECT_EQ(outline("<dict><key>l</key><array><dict><key>n</key><string>A</string></dict>"
                    "<dict><key>n</key><integer>1</integer></dict></array></dict>"),
            (Outline{{"l", "list", 1, 2}, {"l[]/n", "mixed", 2, 1}}));
}

TEST(DocumentOutline, DoesNotGoDeeperThanEightLevels) {
  std::string open;
  std::string close;
  for (int level = 0; level < 20; ++level) {
    open += "<dict><key>k</key>";
    close += "</dict>";
  }
  const Outline deep = outline(open + "<true/>" + close);
  ASSERT_EQ(deep.size(), 8u);
  EXPECT_EQ(deep.back().path, "k/k/k/k/k/k/k/k");
}

TEST(DocumentOutline, OfADocumentThatIsNoDictionaryIsEmptyOrItsElements) {
  EXPECT_EQ(outline("<string>x</string>"), Outline());
  EXPECT_EQ(outline("<array><dict><key>a</key><true/></dict><array/></array>"),
            (Outline{{"[]/a", "boolean", 1, 0}}));
}

TEST(DocumentOutline, SizesAreToldInWords) {
  EXPECT_EQ(sizeText({"d", "dictionary", 1, 1}), "1 entry");
  EXPECT_EQ(sizeText({"d", "dictionary", 2, 3}), "up to 3 entries");
  EXPECT_EQ(sizeText({"l", "list", 1, 1}), "1 element");
  EXPECT_EQ(sizeText({"l", "list", 1, 0}), "0 elements");
  EXPECT_EQ(sizeText({"t", "text", 1, 1}), "1 byte");
  EXPECT_EQ(sizeText({"t", "data", 4, 9}), "up to 9 bytes");
  EXPECT_EQ(sizeText({"n", "number", 1, 0}), "");
}

}  // namespace
}  // namespace pallimo::app
