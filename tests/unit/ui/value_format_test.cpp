// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/value_format.h"

#include <gtest/gtest.h>

#include <limits>

#include "unit/base/comma_locale.h"

namespace pallimo::ui {
namespace {

using enum ValueFormat;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(ValueFormat, WattsAndGigahertzHaveTwoDecimals) {
  EXPECT_EQ(formatValue(twoDecimals, 0), "0.00");
  EXPECT_EQ(formatValue(twoDecimals, 14.314), "14.31");
  EXPECT_EQ(formatValue(twoDecimals, 1234.5), "1234.50");
}

TEST(ValueFormat, WholeDegreesAreRounded) {
  EXPECT_EQ(formatValue(whole, 58.6), "59");
  EXPECT_EQ(formatValue(whole, 100.4), "100");
  EXPECT_EQ(formatValue(whole, -1), "-1");
}

TEST(ValueFormat, DegreesLoseADecimalAtAHundredBeforeRounding) {
  EXPECT_EQ(formatValue(degrees, 52.371), "52.37");
  EXPECT_EQ(formatValue(degrees, 99.996), "100.00");
  EXPECT_EQ(formatValue(degrees, 100.0), "100.0");
  EXPECT_EQ(formatValue(degrees, 212.04), "212.0");
}

TEST(ValueFormat, PercentagesLoseADecimalWhenTheFractionIsOne) {
  EXPECT_EQ(formatValue(percent, 0), "0.00");
  EXPECT_EQ(formatValue(percent, 0.5), "50.00");
  EXPECT_EQ(formatValue(percent, 0.24812), "24.81");
  EXPECT_EQ(formatValue(percent, 0.99999), "100.00");
  EXPECT_EQ(formatValue(percent, 1.0), "100.0");
  EXPECT_EQ(formatValue(percent, 1.25), "125.0");
}

TEST(ValueFormat, WhatIsNotANumberSaysSo) {
  for (const ValueFormat format : {twoDecimals, whole, degrees, percent}) {
    EXPECT_EQ(formatValue(format, kNan), "nan");
    EXPECT_EQ(formatValue(format, -kNan), "nan");
  }
}

TEST(ValueFormat, TheDecimalPointIsAPointInEveryLocale) {
  const tests::CommaLocale locale;
  EXPECT_EQ(formatValue(twoDecimals, 1.25), "1.25");
  EXPECT_EQ(formatValue(percent, 0.125), "12.50");
}

}  // namespace
}  // namespace pallimo::ui
