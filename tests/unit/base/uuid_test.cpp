// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/uuid.h"

#include <gtest/gtest.h>

namespace pallimo::base {
namespace {

constexpr std::uint64_t kAllBits = ~std::uint64_t{0};

TEST(UuidText, WritesItsBitsInOrderInUpperCase) {
  EXPECT_EQ(uuidText(0x0123456789AB4DEF, 0xBEDCBA9876543210),
            "01234567-89AB-4DEF-BEDC-BA9876543210");
}

TEST(UuidText, KeepsLeadingZeros) {
  EXPECT_EQ(uuidText(0, 0), "00000000-0000-4000-8000-000000000000");
}

TEST(UuidText, SetsVersionAndVariantInWhatHasAllBits) {
  EXPECT_EQ(uuidText(kAllBits, kAllBits), "FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF");
}

TEST(UuidText, TakesTheVariantsOtherTwoBitsAsTheyAre) {
  EXPECT_EQ(uuidText(0, 0x1000000000000000).at(19), '9');
  EXPECT_EQ(uuidText(0, 0x2000000000000000).at(19), 'A');
  EXPECT_EQ(uuidText(0, 0x3000000000000000).at(19), 'B');
}

TEST(UuidText, TellsApartNumbersThatDifferInAnyFreeBit) {
  for (int bit = 0; bit < 64; ++bit) {
    const auto flipped = std::uint64_t{1} << bit;
    const bool isVersion = bit >= 12 && bit < 16;
    EXPECT_EQ(uuidText(flipped, 0) == uuidText(0, 0), isVersion) << "high bit " << bit;
    EXPECT_EQ(uuidText(0, flipped) == uuidText(0, 0), bit >= 62) << "low bit " << bit;
  }
}

}  // namespace
}  // namespace pallimo::base
