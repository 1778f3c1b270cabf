// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/system_random.h"

#include <gtest/gtest.h>

#include <set>

namespace pallimo::adapters::common {
namespace {

TEST(SystemRandom, NeverGivesTheSameNumberInAThousand) {
  SystemRandom random;
  std::set<std::uint64_t> numbers;
  for (int count = 0; count < 1000; ++count) numbers.insert(random.next());
  EXPECT_EQ(numbers.size(), 1000u);
}

TEST(SystemRandom, SetsAndClearsEveryBit) {
  SystemRandom random;
  std::uint64_t everSet = 0;
  std::uint64_t everClear = 0;
  for (int count = 0; count < 1000; ++count) {
    const auto number = random.next();
    everSet |= number;
    everClear |= ~number;
  }
  EXPECT_EQ(everSet, ~std::uint64_t{0});
  EXPECT_EQ(everClear, ~std::uint64_t{0});
}

TEST(SystemRandom, DiffersFromOneGeneratorToTheNext) {
  EXPECT_NE(SystemRandom().next(), SystemRandom().next());
}

}  // namespace
}  // namespace pallimo::adapters::common
