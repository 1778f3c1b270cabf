// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/settings_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace pallimo::adapters::qt {
namespace {

TEST(SettingsText, Booleans) {
  EXPECT_EQ(textOfBool(true), "true");
  EXPECT_EQ(textOfBool(false), "false");
  for (const char* text : {"true", "True", "yes", "YES", "1", "2", "-1", "0.5"}) {
    EXPECT_TRUE(boolOfText(text)) << text;
  }
  for (const char* text : {"false", "no", "0", "0.0", "", "truth", "nan"}) {
    EXPECT_FALSE(boolOfText(text)) << text;
  }
}

TEST(SettingsText, IntegersKeepTheir64Bits) {
  for (const std::int64_t value :
       {std::int64_t{0}, std::int64_t{-7}, std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_EQ(integerOfText(textOfInteger(value)), value);
  }
}

TEST(SettingsText, IntegersAreReadLeniently) {
  EXPECT_EQ(integerOfText("2.75"), 2);
  EXPECT_EQ(integerOfText("-2.75"), -2);
  EXPECT_EQ(integerOfText("12 seconds"), 12);
  EXPECT_EQ(integerOfText("true"), 1);
  EXPECT_EQ(integerOfText(""), 0);
  EXPECT_EQ(integerOfText("many"), 0);
  EXPECT_EQ(integerOfText("nan"), 0);
  EXPECT_EQ(integerOfText("1e300"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integerOfText("-1e300"), std::numeric_limits<std::int64_t>::min());
}

TEST(SettingsText, DoublesAreReadLeniently) {
  EXPECT_EQ(doubleOfText("0.1"), 0.1);
  EXPECT_EQ(doubleOfText("2.75 ms"), 2.75);
  EXPECT_EQ(doubleOfText("yes"), 1);
  EXPECT_EQ(doubleOfText(""), 0);
  EXPECT_EQ(doubleOfText("fast"), 0);
}

}  // namespace
}  // namespace pallimo::adapters::qt
