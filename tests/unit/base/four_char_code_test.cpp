// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/four_char_code.h"

#include <gtest/gtest.h>

namespace pallimo::base {
namespace {

TEST(FourCharCode, PutsTheFirstCharacterInTheHighestByte) {
  EXPECT_EQ(encodeFourCharCode("Te05"), 0x54653035u);
  EXPECT_EQ(encodeFourCharCode("#KEY"), 0x234B4559u);
  EXPECT_EQ(encodeFourCharCode("flt "), 0x666C7420u);
}

TEST(FourCharCode, IsZeroForAnEmptyName) { EXPECT_EQ(encodeFourCharCode(""), 0u); }

TEST(FourCharCode, ShiftsAShorterNameInFromTheRight) {
  EXPECT_EQ(encodeFourCharCode("Te"), 0x5465u);
}

TEST(FourCharCode, KeepsTheLastFourBytesOfALongerName) {
  EXPECT_EQ(encodeFourCharCode("xTe05"), 0x54653035u);
}

TEST(FourCharCode, CountsTheBytesOfUtf8WithoutASign) {
  EXPECT_EQ(encodeFourCharCode("\xC3\xA9\xFF"), 0x00C3A9FFu);
}

TEST(FourCharCode, DecodesToFourCharacters) {
  EXPECT_EQ(decodeFourCharCode(0x666C7420), "flt ");
  EXPECT_EQ(decodeFourCharCode(0x54653035), "Te05");
}

TEST(FourCharCode, DecodesToFourCharactersEvenIfTheyAreNone) {
  EXPECT_EQ(decodeFourCharCode(0), std::string(4, '\0'));
  EXPECT_EQ(decodeFourCharCode(0x54000080), std::string("T\0\0\x80", 4));
}

TEST(FourCharCode, ComesBackFromEveryByte) {
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    const std::uint32_t code = byte * 0x01010101u;
    EXPECT_EQ(encodeFourCharCode(decodeFourCharCode(code)), code);
  }
}

}  // namespace
}  // namespace pallimo::base
