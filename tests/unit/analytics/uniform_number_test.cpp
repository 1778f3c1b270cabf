// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/uniform_number.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "fakes/scripted_random_numbers.h"

namespace pallimo::analytics {
namespace {

constexpr std::uint64_t kLast = 50000;
constexpr std::uint64_t kHighest = UINT64_MAX;
/// 2^64 modulo 50001: so many of the 2^64 numbers are too many for an even share.
constexpr std::uint64_t kSurplus = 27484;

std::uint64_t numberFrom(std::initializer_list<std::uint64_t> script) {
  fakes::ScriptedRandomNumbers random(script);
  return uniformNumber(random, kLast);
}

TEST(UniformNumber, BothEndsOfTheRangeAreMet) {
  EXPECT_EQ(numberFrom({50001 * 3}), 0u);
  EXPECT_EQ(numberFrom({50001 * 3 + 50000}), 50000u);
}

TEST(UniformNumber, TheSurplusIsWhatARangeDoesNotDivideEvenly) {
  EXPECT_EQ((kHighest % 50001 + 1) % 50001, kSurplus);
}

TEST(UniformNumber, TheNumbersThatAreTooManyAreNotTaken) {
  EXPECT_EQ(numberFrom({0, kSurplus - 1, 50001 + 7}), 7u);
}

TEST(UniformNumber, ASourceThatGivesNoOtherNumbersComesToAnEnd) {
  EXPECT_EQ(numberFrom({}), 100u);  // the hundredth of 1, 2, 3 and so on
}

TEST(UniformNumber, TheFirstBeyondThemIsTaken) { EXPECT_EQ(numberFrom({kSurplus, 1}), kSurplus); }

TEST(UniformNumber, TheHighestEndsTheLastShare) {
  // The numbers from the surplus on are a multiple of the count, so that the last of them lies one
  // before the first one's remainder.
  EXPECT_EQ(numberFrom({kHighest}), kSurplus - 1);
}

TEST(UniformNumber, ARangeThatDividesEvenlyTakesEveryNumber) {
  fakes::ScriptedRandomNumbers random{0, kHighest};
  EXPECT_EQ(uniformNumber(random, 255), 0u);
  EXPECT_EQ(uniformNumber(random, 255), 255u);
}

}  // namespace
}  // namespace pallimo::analytics
