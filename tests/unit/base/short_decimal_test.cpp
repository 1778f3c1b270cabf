// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/short_decimal.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace pallimo::base {
namespace {

using Limits = std::numeric_limits<double>;

std::string shortDecimal(double value, int decimals) {
  std::string text;
  return appendShortDecimal(text, value, decimals) ? text : "refused " + text;
}

std::string printed(double value, int decimals) {
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

/// Compares with the C library at every number of decimals.
void expectAsPrinted(double value) {
  for (int decimals = 0; decimals <= 3; ++decimals) {
    EXPECT_EQ(shortDecimal(value, decimals), printed(value, decimals)) << std::hexfloat << value;
  }
}

void expectAsPrintedWithNeighbours(double value) {
  expectAsPrinted(value);
  expectAsPrinted(std::nextafter(value, Limits::infinity()));
  expectAsPrinted(std::nextafter(value, -Limits::infinity()));
}

TEST(ShortDecimal, WritesTheDecimalsAskedFor) {
  EXPECT_EQ(shortDecimal(1.25, 0), "1");
  EXPECT_EQ(shortDecimal(1.25, 1), "1.2");
  EXPECT_EQ(shortDecimal(1.25, 2), "1.25");
  EXPECT_EQ(shortDecimal(1.25, 3), "1.250");
}

TEST(ShortDecimal, WritesZerosInFrontOfSmallFractions) {
  EXPECT_EQ(shortDecimal(0, 3), "0.000");
  EXPECT_EQ(shortDecimal(0.001, 3), "0.001");
  EXPECT_EQ(shortDecimal(0.0625, 2), "0.06");
}

TEST(ShortDecimal, KeepsEverySign) {
  EXPECT_EQ(shortDecimal(-2.5, 3), "-2.500");
  EXPECT_EQ(shortDecimal(-0.0, 3), "-0.000");
  EXPECT_EQ(shortDecimal(-0.0001, 0), "-0");
}

TEST(ShortDecimal, HalvesGoToTheEvenDigit) {
  EXPECT_EQ(shortDecimal(0.5, 0), "0");
  EXPECT_EQ(shortDecimal(1.5, 0), "2");
  EXPECT_EQ(shortDecimal(2.5, 0), "2");
  EXPECT_EQ(shortDecimal(0.0625, 3), "0.062");
  EXPECT_EQ(shortDecimal(0.1875, 3), "0.188");
}

TEST(ShortDecimal, CarriesThroughNines) {
  EXPECT_EQ(shortDecimal(9.9996, 3), "10.000");
  EXPECT_EQ(shortDecimal(999.5, 0), "1000");
}

TEST(ShortDecimal, AppendsBehindWhatIsThere) {
  std::string text = "power ";
  EXPECT_TRUE(appendShortDecimal(text, 1.5, 2));
  EXPECT_EQ(text, "power 1.50");
}

TEST(ShortDecimal, RefusesWhatItCannotWriteExactly) {
  EXPECT_EQ(shortDecimal(4503599627370496.0, 0), "refused ");
  EXPECT_EQ(shortDecimal(-1e300, 3), "refused ");
  EXPECT_EQ(shortDecimal(Limits::infinity(), 3), "refused ");
  EXPECT_EQ(shortDecimal(-Limits::quiet_NaN(), 3), "refused ");
  EXPECT_EQ(shortDecimal(1.5, 4), "refused ");
  EXPECT_EQ(shortDecimal(1.5, -1), "refused ");
}

TEST(ShortDecimal, WritesTheLargestThatItTakes) {
  expectAsPrinted(std::nextafter(4503599627370496.0, 0));
  expectAsPrinted(-std::nextafter(4503599627370496.0, 0));
}

TEST(ShortDecimal, WritesTheSmallestThereAre) {
  for (const double value : {Limits::denorm_min(), Limits::min(), 1e-300, 1e-20}) {
    expectAsPrintedWithNeighbours(value);
  }
}

TEST(ShortDecimal, ReadsAsTheCLibraryWritesAtEveryHalf) {
  for (int half = -20'000; half <= 20'000; ++half) {
    expectAsPrintedWithNeighbours(half / 2000.0);
  }
}

TEST(ShortDecimal, ReadsAsTheCLibraryWritesAtEveryPowerOfTwo) {
  for (int exponent = -70; exponent < 52; ++exponent) {
    expectAsPrintedWithNeighbours(std::ldexp(1.0, exponent));
    expectAsPrintedWithNeighbours(std::ldexp(-1.9990234375, exponent - 1));
  }
}

TEST(ShortDecimal, ReadsAsTheCLibraryWritesForAnyBits) {
  std::mt19937_64 random(20260305);
  constexpr std::uint64_t kSignAndFraction = ~(std::uint64_t{0x7FF} << 52);
  constexpr std::uint64_t kSmallestExponent = 1023 - 70;
  for (int i = 0; i < 50'000; ++i) {
    const std::uint64_t exponent = kSmallestExponent + random() % (70 + 52);
    expectAsPrinted(std::bit_cast<double>((random() & kSignAndFraction) | exponent << 52));
  }
}

}  // namespace
}  // namespace pallimo::base
