// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/text/strict_json.h"

#include <gtest/gtest.h>

#include <string>

#include "adapters/simulated/text/json_node.h"

namespace pallimo::adapters::simulated {
namespace {

std::string complaint(const std::string& text) {
  try {
    parseStrictJson(text);
    return "none";
  } catch (const JsonMismatch& mismatch) {
    return mismatch.what();
  }
}

std::string nested(int levels) { return std::string(levels, '[') + std::string(levels, ']'); }

TEST(StrictJson, ReadsEveryKindOfValue) {
  const nlohmann::json value = parseStrictJson(
      R"({"a": [1, -2, 2.5, true, null, "x", {}, []], "b": {"c": 18446744073709551615}})");
  EXPECT_EQ(value.dump(), R"({"a":[1,-2,2.5,true,null,"x",{},[]],"b":{"c":18446744073709551615}})");
}

TEST(StrictJson, ReadsAValueThatIsNoObject) { EXPECT_EQ(parseStrictJson(" 7\n"), 7); }

TEST(StrictJson, SkipsAByteOrderMark) { EXPECT_EQ(parseStrictJson("\xEF\xBB\xBF{}").dump(), "{}"); }

TEST(StrictJson, RefusesAnEmptyText) {
  EXPECT_EQ(complaint(""), "line 1, column 1: expected JSON, got something else");
}

TEST(StrictJson, SaysWhereTheTextStopsBeingJson) {
  EXPECT_EQ(complaint("{\n  \"a\": oops\n}"),
            "line 2, column 8: expected JSON, got something else");
}

TEST(StrictJson, RefusesWhatFollowsTheValue) {
  EXPECT_EQ(complaint("{} {}"), "line 1, column 4: expected JSON, got something else");
}

TEST(StrictJson, RefusesBytesThatAreNotUtf8) {
  EXPECT_EQ(complaint("\"\xff\""), "line 1, column 2: expected JSON, got something else");
}

TEST(StrictJson, RefusesANumberThatNoDoubleHolds) {
  EXPECT_NE(complaint("[1e999]").find("expected numbers that fit a double, got more"),
            std::string::npos);
}

TEST(StrictJson, RefusesAKeyThatStandsTwice) {
  EXPECT_EQ(complaint(R"({"a": 1, "a": 2})"), "a: expected each key once, got it twice");
}

TEST(StrictJson, SaysWhereARepeatedKeyStands) {
  EXPECT_EQ(complaint(R"({"steps": [{}, {"x": {"y z": 1, "y z": 1}}]})"),
            "steps[1].x[\"y z\"]: expected each key once, got it twice");
}

TEST(StrictJson, AcceptsTheSameKeyInTwoObjects) {
  EXPECT_EQ(complaint(R"([{"a": 1}, {"a": {"a": 2}}])"), "none");
}

TEST(StrictJson, ReadsSixtyFourLevelsAndNoMore) {
  EXPECT_EQ(complaint(nested(64)), "none");
  EXPECT_NE(complaint(nested(65)).find("expected at most 64 levels, got more"), std::string::npos);
}

TEST(StrictJson, SaysWhereItIsTooDeep) {
  const std::string line = complaint("{\"a\": [1, " + nested(63) + "]}");
  EXPECT_EQ(line.substr(0, 10), "a[1][0][0]");
}

TEST(StrictJson, SurvivesAMillionLevels) {
  EXPECT_NE(complaint(std::string(1'000'000, '[')), "none");
  std::string objects;
  for (int i = 0; i < 100'000; ++i) objects += "{\"a\":";
  EXPECT_NE(complaint(objects), "none");
}

TEST(StrictJson, TakesLinearTimeOverALongArray) {
  // Two million objects; a reader that looked at all their siblings each time would need hours.
  std::string text = "[{}";
  for (int i = 0; i < 2'000'000; ++i) text += ",{}";
  EXPECT_EQ(parseStrictJson(text + "]").size(), 2'000'001u);
}

TEST(JsonText, QuotesOnOneLineAndCutsLongTexts) {
  EXPECT_EQ(quotedText("a\nb\"c"), R"("a\nb\"c")");
  EXPECT_EQ(quotedText(std::string(100, 'x')), "\"" + std::string(60, 'x') + "...\"");
}

TEST(JsonText, NeverCutsACharacterInTwo) {
  std::string text(59, 'x');
  for (int i = 0; i < 3; ++i) text += "\u00e9";
  EXPECT_EQ(quotedText(text), "\"" + std::string(59, 'x') + "...\"");
}

TEST(JsonText, OneLineIsTheWholeTextWithoutQuotes) {
  EXPECT_EQ(oneLine("/tmp/some folder"), "/tmp/some folder");
  EXPECT_EQ(oneLine(std::string(100, 'x')), std::string(100, 'x'));
  EXPECT_EQ(oneLine("a\nb\xff\""), "a\\nb\uFFFD\\\"");
  EXPECT_EQ(oneLine(""), "");
}

TEST(JsonText, ReplacesBytesThatAreNotUtf8) { EXPECT_EQ(quotedText("\xff"), "\"\uFFFD\""); }

TEST(JsonText, NamesSmallNumbersInWords) {
  EXPECT_EQ(numberWord(0), "none");
  EXPECT_EQ(numberWord(3), "three");
  EXPECT_EQ(numberWord(10), "ten");
  EXPECT_EQ(numberWord(11), "11");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
