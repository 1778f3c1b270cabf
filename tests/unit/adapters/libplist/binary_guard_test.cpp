// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/binary_guard.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "unit/adapters/libplist/binary_document.h"

namespace pallimo::adapters::libplist {
namespace {

using tests::arrayOf;
using tests::bigEndian;
using tests::BinaryDocument;
using tests::counted;
using tests::dictionaryOf;
using tests::nestedArrays;
using tests::textObject;

bool isHarmless(const std::string& bytes) {
  return isHarmlessBinary({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

bool isHarmless(const BinaryDocument& document) { return isHarmless(document.bytes()); }

/// A document of one object.
bool isHarmlessObject(const std::string& object) { return isHarmless(BinaryDocument{{object}}); }

const std::string kFive = "\x10\x05";

TEST(BinaryGuard, LetsEveryKindOfObjectPass) {
  EXPECT_TRUE(isHarmlessObject("\x08"));
  EXPECT_TRUE(isHarmlessObject("\x09"));
  for (unsigned power = 0; power <= 4; ++power) {
    EXPECT_TRUE(isHarmlessObject(static_cast<char>(0x10 + power) + std::string(1U << power, '\0')));
  }
  EXPECT_TRUE(isHarmlessObject("\x22" + std::string(4, 1)));
  EXPECT_TRUE(isHarmlessObject("\x23" + std::string(8, 1)));
  EXPECT_TRUE(isHarmlessObject("\x33" + std::string(8, 1)));
  EXPECT_TRUE(isHarmlessObject("\x43hey"));
  EXPECT_TRUE(isHarmlessObject("\x53hey"));
  EXPECT_TRUE(isHarmlessObject("\x61" + std::string(2, 1)));
  EXPECT_TRUE(isHarmlessObject("\x80\x03"));
  EXPECT_TRUE(isHarmlessObject("\xA0"));
  EXPECT_TRUE(isHarmlessObject("\xD0"));
}

TEST(BinaryGuard, LetsAnIntegerOfSixteenBytesPassIfItFitsEight) {
  EXPECT_TRUE(isHarmlessObject("\x14" + std::string(8, '\0') + std::string(8, '\xFF')));
  EXPECT_FALSE(isHarmlessObject("\x14" + std::string(7, '\0') + std::string(9, '\x01')));
  EXPECT_FALSE(isHarmlessObject("\x14" + std::string(16, '\xFF')));
}

TEST(BinaryGuard, RefusesObjectsThatNoPropertyListHas) {
  EXPECT_FALSE(isHarmlessObject(std::string(1, '\0')));         // null
  EXPECT_FALSE(isHarmlessObject("\x0F"));                       // padding
  EXPECT_FALSE(isHarmlessObject("\x15" + std::string(32, 1)));  // an integer of 32 bytes
  EXPECT_FALSE(isHarmlessObject("\x24" + std::string(16, 1)));  // a real of 16 bytes
  EXPECT_FALSE(isHarmlessObject("\x34" + std::string(8, 1)));   // no date
  EXPECT_FALSE(isHarmlessObject("\x88" + std::string(9, 1)));   // a reference of 9 bytes
  EXPECT_FALSE(isHarmlessObject("\xC0"));                       // a set
  EXPECT_FALSE(isHarmlessObject("\x70"));
  EXPECT_FALSE(isHarmlessObject("\xF0"));
}

TEST(BinaryGuard, RefusesWhatIsTooShortForATrailer) {
  EXPECT_FALSE(isHarmless(std::string("bplist00")));
  EXPECT_FALSE(isHarmless("bplist00" + std::string(31, '\0')));
}

TEST(BinaryGuard, RefusesATrailerWithImpossibleSizes) {
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, 0, 0, 4}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, 0, 9, 4}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, 0, 4, 0}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, 0, 4, 9}));
}

TEST(BinaryGuard, RefusesATrailerThatPointsOutsideTheBytes) {
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 1}));              // the top object
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 1}));           // one object too many
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, UINT64_MAX}));  // none at all
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, UINT64_MAX - 1}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, 5}));  // the table behind the trailer
  EXPECT_FALSE(isHarmless(BinaryDocument{{kFive}, 0, 0, UINT64_MAX - 20}));
}

TEST(BinaryGuard, RefusesReferencesToObjectsThatAreNotThere) {
  EXPECT_TRUE(isHarmless(BinaryDocument{{arrayOf({1}), kFive}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{arrayOf({2}), kFive}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{dictionaryOf({1, 7}), textObject("key")}}));
}

TEST(BinaryGuard, RefusesAnObjectThatReachesIntoTheTableOfOffsets) {
  EXPECT_FALSE(isHarmlessObject("\x13" + std::string(7, 1)));
  EXPECT_FALSE(isHarmlessObject("\x54hey"));
  EXPECT_FALSE(isHarmlessObject("\x62" + std::string(3, 1)));
  EXPECT_FALSE(isHarmlessObject("\xA1" + std::string(3, 0)));
}

TEST(BinaryGuard, RefusesLengthsThatAreMissingOrAbsurd) {
  EXPECT_FALSE(isHarmlessObject("\x5F"));
  EXPECT_FALSE(isHarmlessObject("\x5F\x12\x01"));
  EXPECT_FALSE(isHarmlessObject("\x4F\x12"));  // the table's first offset would be its length, 8
  EXPECT_FALSE(isHarmlessObject("\x5F\x51x"));
  EXPECT_FALSE(isHarmlessObject("\x5F\x13" + bigEndian(UINT64_MAX, 8)));
  EXPECT_FALSE(isHarmlessObject("\xAF\x13" + bigEndian(UINT64_MAX / 4 + 1, 8)));
  EXPECT_FALSE(isHarmlessObject("\xDF\x13" + bigEndian(UINT64_MAX / 8 + 1, 8)));
}

/// A dictionary of one key.
bool isHarmlessKey(const std::string& key) {
  return isHarmless(BinaryDocument{{dictionaryOf({1, 2}), key, kFive}});
}

TEST(BinaryGuard, RefusesAKeyThatIsNoText) {
  EXPECT_TRUE(isHarmlessKey("\x51k"));
  EXPECT_TRUE(isHarmlessKey(std::string("\x61\0k", 3)));
  EXPECT_FALSE(isHarmlessKey(kFive));
  EXPECT_FALSE(isHarmlessKey("\xA0"));
  EXPECT_FALSE(isHarmlessKey("\x09"));
}

TEST(BinaryGuard, RefusesAKeyWithANUL) {
  EXPECT_FALSE(isHarmlessKey(std::string("\x52k\0", 3)));
  EXPECT_FALSE(isHarmlessKey(std::string("\x62\0k\0\0", 5)));
  EXPECT_TRUE(isHarmlessKey(std::string("\x62\x01\0\0\x01", 5)));
}

TEST(BinaryGuard, TakesTheSecondHalfOfADictionaryForItsValues) {
  EXPECT_TRUE(isHarmless(BinaryDocument{
      {dictionaryOf({1, 2, 3, 4}), "\x51k", "\x51l", kFive, std::string("\x51\0", 2)}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{
      {dictionaryOf({1, 2, 3, 4}), "\x51k", kFive, "\x51l", std::string("\x51\0", 2)}}));
}

TEST(BinaryGuard, RefusesACycle) {
  EXPECT_FALSE(isHarmless(BinaryDocument{{arrayOf({0})}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{arrayOf({1}), arrayOf({2}), arrayOf({0})}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{dictionaryOf({1, 0}), textObject("key")}}));
}

TEST(BinaryGuard, LetsNineHundredNinetyNineLevelsPassAndRefusesOneMore) {
  EXPECT_TRUE(isHarmless(nestedArrays(999)));
  EXPECT_FALSE(isHarmless(nestedArrays(1'000)));
}

TEST(BinaryGuard, SurvivesAMillionLevels) { EXPECT_FALSE(isHarmless(nestedArrays(1'000'000))); }

TEST(BinaryGuard, CountsLevelsNotNeighbours) {
  BinaryDocument document{{arrayOf(std::vector<std::uint64_t>(5'000, 1)), arrayOf({})}};
  EXPECT_TRUE(isHarmless(document));
}

TEST(BinaryGuard, LetsObjectsBeShared) {
  EXPECT_TRUE(isHarmless(BinaryDocument{{arrayOf({1, 1, 2}), kFive, arrayOf({1, 1})}}));
}

TEST(BinaryGuard, RefusesFewObjectsThatUnfoldIntoMillions) {
  BinaryDocument document;
  for (std::uint64_t i = 1; i <= 40; ++i) document.objects.push_back(arrayOf({i, i}));
  document.objects.push_back(kFive);
  EXPECT_FALSE(isHarmless(document));
}

TEST(BinaryGuard, RefusesALongTextThatIsSharedTooOften) {
  const std::string text = textObject(std::string(100'000, 'x'));
  EXPECT_TRUE(isHarmless(BinaryDocument{{arrayOf(std::vector<std::uint64_t>(500, 1)), text}}));
  EXPECT_FALSE(isHarmless(BinaryDocument{{arrayOf(std::vector<std::uint64_t>(1'000, 1)), text}}));
}

}  // namespace
}  // namespace pallimo::adapters::libplist
