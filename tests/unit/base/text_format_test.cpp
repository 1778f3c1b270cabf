// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/text_format.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <thread>

#include "unit/base/comma_locale.h"

namespace pallimo::base {
namespace {

class TextFormat : public tests::UnderEachLocale {};

INSTANTIATE_TEST_SUITE_P(Locales, TextFormat, tests::kUserLocales, tests::localeName);

std::string printed(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

TEST_P(TextFormat, WritesTheDecimalsAskedFor) {
  EXPECT_EQ(formatFixed(1.25, 0), "1");
  EXPECT_EQ(formatFixed(1.25, 1), "1.2");
  EXPECT_EQ(formatFixed(1.25, 2), "1.25");
  EXPECT_EQ(formatFixed(1.25, 4), "1.2500");
}

TEST_P(TextFormat, RoundsHalvesToEvenAsPrintfDoes) {
  EXPECT_EQ(formatFixed(0.5, 0), "0");
  EXPECT_EQ(formatFixed(1.5, 0), "2");
  EXPECT_EQ(formatFixed(0.125, 2), "0.12");
  EXPECT_EQ(formatFixed(0.375, 2), "0.38");
}

TEST_P(TextFormat, KeepsTheSignOfNegativesAndOfNegativeZero) {
  EXPECT_EQ(formatFixed(-2.5, 1), "-2.5");
  EXPECT_EQ(formatFixed(-0.001, 2), "-0.00");
}

TEST_P(TextFormat, SeparatesNoThousands) { EXPECT_EQ(formatFixed(1234567.5, 1), "1234567.5"); }

TEST_P(TextFormat, WritesNotANumberWithoutASignOnEveryProcessor) {
  const double quiet = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(formatFixed(quiet, 2), "nan");
  EXPECT_EQ(formatFixed(std::copysign(quiet, -1.0), 2), "nan");
}

TEST_P(TextFormat, WritesInfinitiesAsPrintfDoes) {
  EXPECT_EQ(formatFixed(std::numeric_limits<double>::infinity(), 2), "inf");
  EXPECT_EQ(formatFixed(-std::numeric_limits<double>::infinity(), 2), "-inf");
}

TEST_P(TextFormat, WritesEveryDigitOfAHugeNumber) {
  const std::string text = formatFixed(1e300, 2);
  EXPECT_EQ(text.size(), 304U);
  EXPECT_EQ(text.substr(0, 8), "10000000");
  EXPECT_EQ(text.substr(301), ".00");
}

TEST_P(TextFormat, WritesANumberThatJustFillsItsBuffer) {
  // The double nearest to 1e60 has 60 digits, so that three decimals make 64 characters.
  EXPECT_EQ(formatFixed(1e60, 2).size(), 63U);
  EXPECT_EQ(formatFixed(1e60, 2).substr(60), ".00");
  EXPECT_EQ(formatFixed(1e60, 3).size(), 64U);
  EXPECT_EQ(formatFixed(1e60, 3).substr(60), ".000");
}

TEST_P(TextFormat, AppendsBehindWhatIsThere) {
  std::string out = "power ";
  appendFixed(out, 1.5, 2);
  appendFixed(out, 1e300, 0);
  EXPECT_EQ(out.substr(0, 12), "power 1.5010");
  appendFixed(out, std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_EQ(out.substr(out.size() - 4), "0nan");
}

TEST_P(TextFormat, LeavesTheThreadsLocaleAsItWas) {
  const std::string before = printed(1.25);
  formatFixed(1.25, 2);
  formatFixed(1e300, 2);
  EXPECT_EQ(printed(1.25), before);
}

TEST(CLocaleScope, IsNeededWhereTheUserWritesAComma) {
  const tests::CommaLocale comma;
  EXPECT_EQ(printed(1.25), "1,25");
  EXPECT_EQ(std::strtod("1.5", nullptr), 1.0);
}

TEST(CLocaleScope, ReadsAndWritesADecimalPoint) {
  const tests::CommaLocale comma;
  const CLocaleScope scope;
  EXPECT_EQ(printed(1.25), "1.25");
  EXPECT_EQ(std::strtod("1.5", nullptr), 1.5);
}

TEST(CLocaleScope, EndsWithItsScope) {
  const tests::CommaLocale comma;
  { const CLocaleScope scope; }
  EXPECT_EQ(printed(1.25), "1,25");
}

TEST(CLocaleScope, Nests) {
  const tests::CommaLocale comma;
  const CLocaleScope outer;
  { const CLocaleScope inner; }
  EXPECT_EQ(printed(1.25), "1.25");
}

TEST(CLocaleScope, LeavesOtherThreadsAlone) {
  const tests::CommaLocale comma;
  const CLocaleScope scope;
  std::string elsewhere;
  std::thread([&elsewhere] { elsewhere = printed(1.25); }).join();
  EXPECT_EQ(elsewhere, "1,25");
}

}  // namespace
}  // namespace pallimo::base
