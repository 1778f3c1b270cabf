// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/percent_encoding.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace pallimo::analytics {
namespace {

std::string inHex(char character) {
  char text[4];
  std::snprintf(text, sizeof text, "%%%02X", static_cast<unsigned char>(character));
  return text;
}

TEST(PercentEncoding, LettersDigitsAndSixMarksStandAsTheyAre) {
  const std::string allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:";
  EXPECT_EQ(percentEncodedValue(allowed), allowed);
}

TEST(PercentEncoding, TheSixteenThatServersMayMisreadAreEncoded) {
  EXPECT_EQ(percentEncodedValue("&/?;',+\"!^()=@*$"),
            "%26%2F%3F%3B%27%2C%2B%22%21%5E%28%29%3D%40%2A%24");
}

TEST(PercentEncoding, WhatAQueryCannotHoldIsEncoded) {
  EXPECT_EQ(percentEncodedValue(" #%<>[\\]`{|}"), "%20%23%25%3C%3E%5B%5C%5D%60%7B%7C%7D");
}

TEST(PercentEncoding, EveryCharacterOfAsciiIsEitherItselfOrTwoUpperCaseDigits) {
  constexpr std::string_view kAllowed =
      "-.0123456789:ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~";
  for (int code = 0; code < 128; ++code) {
    const auto character = static_cast<char>(code);
    const bool isAllowed = kAllowed.find(character) != std::string_view::npos;
    EXPECT_EQ(percentEncodedValue({&character, 1}),
              isAllowed ? std::string(1, character) : inHex(character))
        << code;
  }
}

TEST(PercentEncoding, TextBeyondAsciiIsTheBytesOfItsUtf8) {
  EXPECT_EQ(percentEncodedValue("Größe"), "Gr%C3%B6%C3%9Fe");
  EXPECT_EQ(percentEncodedValue("電"), "%E9%9B%BB");
  EXPECT_EQ(percentEncodedValue("\U0001F600"), "%F0%9F%98%80");
}

TEST(PercentEncoding, AReplacementCharacterIsTextLikeAnyOther) {
  EXPECT_EQ(percentEncodedValue("\uFFFD"), "%EF%BF%BD");
}

TEST(PercentEncoding, WhatIsNoUtf8BecomesEmpty) {
  for (const char* text : {"\xff", "ab\xc3", "\x80", "\xed\xa0\x80", "\xc0\xaf"}) {
    EXPECT_EQ(percentEncodedValue(text), "") << inHex(*text);
  }
}

TEST(PercentEncoding, NothingStaysNothing) { EXPECT_EQ(percentEncodedValue(""), ""); }

}  // namespace
}  // namespace pallimo::analytics
