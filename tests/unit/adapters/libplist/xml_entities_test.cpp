// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_entities.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "adapters/libplist/document_limits.h"

namespace pallimo::adapters::libplist {
namespace {

std::string entities(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "&amp;";
  return text;
}

std::string element(const std::string& text) { return "<string>" + text + "</string>"; }

/// A text of exactly so many bytes over which libplist would move `kMostMovedBytes` for this many
/// entities. Its tag's name counts as well: "string>" is seven.
std::string dearest(std::size_t count) {
  const std::size_t size = kMostMovedBytes / count - 7;
  return entities(count) + std::string(size - 5 * count, 'x');
}

TEST(XMLEntities, ADocumentWithoutThemHasFew) {
  EXPECT_TRUE(hasFewEntities(""));
  EXPECT_TRUE(hasFewEntities(element(std::string(1'000'000, 'x'))));
}

TEST(XMLEntities, ATextMayHaveAsManyAsMoveNoMoreThanTheLimit) {
  for (const std::size_t count : {256U, 1'024U, 4'096U}) {
    const std::string text = dearest(count);
    EXPECT_TRUE(hasFewEntities(element(text))) << count;
    EXPECT_FALSE(hasFewEntities(element(text + 'x'))) << count;
  }
}

TEST(XMLEntities, TheTextsOfADocumentAreAddedUp) {
  const std::string half = element(dearest(512).substr(0, kMostMovedBytes / 1'024 - 7));
  EXPECT_TRUE(hasFewEntities("<array>" + half + half + "</array>"));
  EXPECT_FALSE(hasFewEntities("<array>" + half + half + element("&lt;") + "</array>"));
}

TEST(XMLEntities, EachTextCountsByItsOwnLength) {
  std::string document = "<array>";
  for (int i = 0; i < 100'000; ++i) document += element("R&amp;D &#9829;");
  EXPECT_TRUE(hasFewEntities(document + element(std::string(1'000'000, 'x')) + "</array>"));
}

TEST(XMLEntities, AnUnfinishedDocumentIsJudgedToItsEnd) {
  EXPECT_TRUE(hasFewEntities("&"));
  EXPECT_TRUE(hasFewEntities("<string>&amp;"));
  EXPECT_FALSE(hasFewEntities("<string>" + entities(20'000)));
}

}  // namespace
}  // namespace pallimo::adapters::libplist
