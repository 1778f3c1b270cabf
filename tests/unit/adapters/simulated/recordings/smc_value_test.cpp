// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/smc_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace pallimo::adapters::simulated {
namespace {

/// The value's bytes; those after it, which must be 0, are counted and left out.
std::vector<int> bytesOf(std::string_view type, double value) {
  const SmcBytes bytes = smcValue(type, value);
  EXPECT_TRUE(bytes.has_value());
  const std::uint32_t size = smcSize(type);
  for (std::size_t i = size; i < bytes->size(); ++i) EXPECT_EQ((*bytes)[i], 0);
  return {bytes->begin(), bytes->begin() + size};
}

TEST(SmcValue, AFloatHasItsLeastSignificantByteFirst) {
  EXPECT_EQ(bytesOf("flt ", 45), (std::vector<int>{0x00, 0x00, 0x34, 0x42}));
}

TEST(SmcValue, WholeNumbersHaveTheirMostSignificantByteFirst) {
  EXPECT_EQ(bytesOf("ui8 ", 7), (std::vector<int>{7}));
  EXPECT_EQ(bytesOf("ui16", 0x1234), (std::vector<int>{0x12, 0x34}));
  EXPECT_EQ(bytesOf("ui32", 0x12345678), (std::vector<int>{0x12, 0x34, 0x56, 0x78}));
}

TEST(SmcValue, FixedPointHasTwoBinaryPlaces) {
  EXPECT_EQ(bytesOf("fpe2", 720.75), (std::vector<int>{0x0B, 0x43}));
}

TEST(SmcValue, LongFixedPointHasSixteenBinaryPlacesAndItsLeastSignificantByteFirst) {
  EXPECT_EQ(bytesOf("ioft", 3.5), (std::vector<int>{0x00, 0x80, 3, 0, 0, 0, 0, 0}));
}

TEST(SmcValue, AnUnknownTypeHasNoValue) {
  EXPECT_EQ(smcValue("ch8*", 1), std::nullopt);
  EXPECT_EQ(smcSize("ch8*"), 0u);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
