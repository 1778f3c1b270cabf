// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "adapters/libplist/libplist_reader.h"

namespace pallimo::adapters::libplist {
namespace {

using base::PropertyList;

/// What the reader makes of the one element.
std::optional<PropertyList> readElement(const std::string& element) {
  const std::string document = "<plist version=\"1.0\">" + element + "</plist>";
  return LibplistReader().read(
      {reinterpret_cast<const std::uint8_t*>(document.data()), document.size()});
}

std::optional<PropertyList> readInteger(const std::string& text) {
  return readElement("<integer>" + text + "</integer>");
}

TEST(XmlNumber, IntegersReadAsTheyAreWritten) {
  EXPECT_EQ(readInteger("0"), PropertyList(std::int64_t{0}));
  EXPECT_EQ(readInteger("42"), PropertyList(std::int64_t{42}));
  EXPECT_EQ(readInteger("-42"), PropertyList(std::int64_t{-42}));
  EXPECT_EQ(readInteger("+42"), PropertyList(std::int64_t{42}));
  EXPECT_EQ(readInteger("0x2A"), PropertyList(std::int64_t{42}));
  EXPECT_EQ(readInteger(" \n42 "), PropertyList(std::int64_t{42}));
  EXPECT_EQ(readInteger(" -42"), PropertyList(std::int64_t{-42}));
}

TEST(XmlNumber, LeadingZerosAreNotOctal) {
  EXPECT_EQ(readInteger("010"), PropertyList(std::int64_t{10}));
  EXPECT_EQ(readInteger("-0010"), PropertyList(std::int64_t{-10}));
  EXPECT_EQ(readInteger("000"), PropertyList(std::int64_t{0}));
  EXPECT_EQ(readInteger("+09"), PropertyList(std::int64_t{9}));
}

TEST(XmlNumber, IntegersReachFromTheLowestSignedToTheHighestUnsigned) {
  EXPECT_EQ(readInteger("-9223372036854775808"),
            PropertyList(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(readInteger("18446744073709551615"),
            PropertyList(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(readInteger("-9223372036854775809"), std::nullopt);
  EXPECT_EQ(readInteger("18446744073709551616"), std::nullopt);
  EXPECT_EQ(readInteger("0x10000000000000000"), std::nullopt);
}

TEST(XmlNumber, ATextThatIsNoIntegerMakesTheDocumentFail) {
  for (const char* text : {"2.5", "nan", "junk", "1e9", "--5", "-", "+-5", "", " ", "5 6", "0x",
                           "0xg", "5<!-- -->5", "1,000"}) {
    EXPECT_EQ(readInteger(text), std::nullopt) << text;
  }
  EXPECT_EQ(readElement("<integer/>"), std::nullopt);
}

TEST(XmlNumber, RealsReadAsTheyAreWritten) {
  for (const auto& [text, value] : {std::pair{"0", 0.0},
                                    {"1.09e+09", 1.09e9},
                                    {"-2.5", -2.5},
                                    {".5", 0.5},
                                    {"5.", 5.0},
                                    {"1E-3", 1e-3},
                                    {" 2.75 ", 2.75},
                                    {"+7", 7.0}}) {
    EXPECT_EQ(readElement("<real>" + std::string(text) + "</real>"), PropertyList(value)) << text;
  }
}

TEST(XmlNumber, RealsMayBeNoNumberOrInfinite) {
  for (const char* text : {"nan", "NaN", "-nan", "NAN"}) {
    const auto value = readElement("<real>" + std::string(text) + "</real>");
    ASSERT_TRUE(value) << text;
    EXPECT_TRUE(std::isnan(value->numberOr(0))) << text;
  }
  EXPECT_EQ(readElement("<real>inf</real>"), PropertyList(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(readElement("<real>-Infinity</real>"),
            PropertyList(-std::numeric_limits<double>::infinity()));
}

TEST(XmlNumber, ATextThatIsNoRealMakesTheDocumentFail) {
  for (const char* text : {"fast", "1,5", "", "1.5x", "0x1p3", "e5", "1e", "1e+", ".", "- 1", "1 2",
                           "infinit", "nan(1)"}) {
    EXPECT_EQ(readElement("<real>" + std::string(text) + "</real>"), std::nullopt) << text;
  }
  EXPECT_EQ(readElement("<real/>"), std::nullopt);
}

TEST(XmlNumber, ADocumentOfMoreThanAMillionElementsIsRefused) {
  const auto arrayOf = [](std::size_t count) {
    std::string document = "<array>";
    for (std::size_t index = 0; index < count; ++index) document += "<true/>";
    return document + "</array>";
  };
  // The <plist> and the <array> count too. What is refused never reaches libplist, whose array
  // grows step by step: under a sanitizer, where each step copies it, that takes half a minute.
  if (!PALLIMO_IS_SANITIZED) {
    EXPECT_TRUE(readElement(arrayOf(999'998)));
  }
  EXPECT_FALSE(readElement(arrayOf(999'999)));
}

}  // namespace
}  // namespace pallimo::adapters::libplist
