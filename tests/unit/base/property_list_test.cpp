// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/property_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace pallimo::base {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

PropertyList text(std::string words) { return PropertyList(std::move(words)); }
PropertyList integer(std::int64_t value) { return PropertyList(value); }
PropertyList real(double value) { return PropertyList(value); }

std::optional<std::int64_t> integerIn(const PropertyList& value) {
  std::int64_t out = 0;
  if (!value.readInteger(out)) return std::nullopt;
  return out;
}

int kindsOf(const PropertyList& value) {
  return (value.dictionary() != nullptr) + (value.array() != nullptr) + (value.text() != nullptr) +
         (value.boolean() != nullptr) + (value.data() != nullptr) + (value.date() != nullptr) +
         value.isNumber();
}

TEST(PropertyList, IsAnEmptyDictionaryFromTheStart) {
  const PropertyList value;
  ASSERT_NE(value.dictionary(), nullptr);
  EXPECT_TRUE(value.dictionary()->empty());
}

TEST(PropertyList, IsOfExactlyOneKind) {
  EXPECT_EQ(kindsOf(PropertyList()), 1);
  EXPECT_EQ(kindsOf(PropertyList(PropertyListArray())), 1);
  EXPECT_EQ(kindsOf(text("a")), 1);
  EXPECT_EQ(kindsOf(real(1)), 1);
  EXPECT_EQ(kindsOf(integer(1)), 1);
  EXPECT_EQ(kindsOf(PropertyList(std::uint64_t{1})), 1);
  EXPECT_EQ(kindsOf(PropertyList(true)), 1);
  EXPECT_EQ(kindsOf(PropertyList(Bytes{1})), 1);
  EXPECT_EQ(kindsOf(PropertyList(PropertyListDate{1})), 1);
}

TEST(PropertyList, HandsOutWhatItWasMadeOf) {
  EXPECT_EQ(*text("abc").text(), "abc");
  EXPECT_EQ(*PropertyList(Bytes{1, 2}).data(), (Bytes{1, 2}));
  EXPECT_EQ(PropertyList(PropertyListDate{2.5}).date()->secondsSince2001, 2.5);
  EXPECT_TRUE(*PropertyList(true).boolean());
  EXPECT_EQ(PropertyList(PropertyListArray{integer(1), integer(2)}).array()->size(), 2U);
}

TEST(PropertyList, ReadsEveryNumberAsADouble) {
  EXPECT_EQ(real(2.5).numberOr(-1), 2.5);
  EXPECT_EQ(integer(-3).numberOr(-1), -3.0);
  EXPECT_EQ(PropertyList(std::numeric_limits<std::uint64_t>::max()).numberOr(-1), 0x1p64);
  EXPECT_TRUE(std::isnan(real(std::nan("")).numberOr(-1)));
}

TEST(PropertyList, GivesTheStandInForWhatIsNoNumber) {
  EXPECT_EQ(text("5").numberOr(-1), -1.0);
  EXPECT_EQ(PropertyList().numberOr(-1), -1.0);
}

TEST(PropertyList, TakesABooleanForNoNumber) {
  EXPECT_FALSE(PropertyList(true).isNumber());
  EXPECT_EQ(PropertyList(true).numberOr(-1), -1.0);
  EXPECT_EQ(integerIn(PropertyList(true)), std::nullopt);
}

TEST(PropertyList, TakesAnIntegralRealForAnInteger) {
  EXPECT_EQ(integerIn(real(3.0)), 3);
  EXPECT_EQ(integerIn(real(-0.0)), 0);
  EXPECT_EQ(integerIn(real(-7.0)), -7);
}

TEST(PropertyList, TakesNothingElseForAnInteger) {
  EXPECT_EQ(integerIn(real(2.5)), std::nullopt);
  EXPECT_EQ(integerIn(real(std::nan(""))), std::nullopt);
  EXPECT_EQ(integerIn(real(HUGE_VAL)), std::nullopt);
  EXPECT_EQ(integerIn(real(-HUGE_VAL)), std::nullopt);
  EXPECT_EQ(integerIn(text("3")), std::nullopt);
  EXPECT_EQ(integerIn(PropertyList()), std::nullopt);
}

TEST(PropertyList, LeavesTheTargetAloneWhenThereIsNoInteger) {
  std::int64_t out = 42;
  EXPECT_FALSE(real(2.5).readInteger(out));
  EXPECT_EQ(out, 42);
}

TEST(PropertyList, KeepsTheSixtyFourBitsOfIntegers) {
  EXPECT_EQ(integerIn(integer(kLowest)), kLowest);
  EXPECT_EQ(integerIn(integer(kHighest)), kHighest);
  EXPECT_EQ(integerIn(integer(9007199254740993)), 9007199254740993);  // 2^53 + 1 is no double
}

TEST(PropertyList, RefusesIntegersBeyondSixtyFourSignedBits) {
  EXPECT_EQ(integerIn(PropertyList(static_cast<std::uint64_t>(kHighest))), kHighest);
  EXPECT_EQ(integerIn(PropertyList(static_cast<std::uint64_t>(kHighest) + 1)), std::nullopt);
  EXPECT_EQ(integerIn(PropertyList(std::numeric_limits<std::uint64_t>::max())), std::nullopt);
}

TEST(PropertyList, RefusesRealsBeyondSixtyFourSignedBits) {
  EXPECT_EQ(integerIn(real(-0x1p63)), kLowest);
  EXPECT_EQ(integerIn(real(0x1p63)), std::nullopt);
  EXPECT_EQ(integerIn(real(std::nextafter(0x1p63, 0))), 9223372036854774784);
  EXPECT_EQ(integerIn(real(std::nextafter(-0x1p63, -HUGE_VAL))), std::nullopt);
}

TEST(PropertyList, FindsAValueByItsKey) {
  const PropertyList value(PropertyListDictionary{{"a", integer(1)}, {"b", integer(2)}});
  ASSERT_NE(value.find("b"), nullptr);
  EXPECT_EQ(*value.find("b"), integer(2));
}

TEST(PropertyList, FindsNothingUnderAnotherKeyOrInAnotherKind) {
  const PropertyList value(PropertyListDictionary{{"key", integer(1)}});
  EXPECT_EQ(value.find("ke"), nullptr);
  EXPECT_EQ(value.find("Key"), nullptr);
  EXPECT_EQ(value.find(""), nullptr);
  EXPECT_EQ(text("key").find("key"), nullptr);
  EXPECT_EQ(PropertyList(PropertyListArray{value}).find("key"), nullptr);
}

TEST(PropertyList, EqualsAValueOfTheSameKindAndContent) {
  const PropertyList one(PropertyListDictionary{{"a", PropertyList(PropertyListArray{real(1)})}});
  const PropertyList same(PropertyListDictionary{{"a", PropertyList(PropertyListArray{real(1)})}});
  const PropertyList other(PropertyListDictionary{{"a", PropertyList(PropertyListArray{real(2)})}});
  EXPECT_EQ(one, same);
  EXPECT_FALSE(one == other);
  EXPECT_FALSE(PropertyList(true) == integer(1));
  EXPECT_FALSE(text("1") == integer(1));
}

}  // namespace
}  // namespace pallimo::base
