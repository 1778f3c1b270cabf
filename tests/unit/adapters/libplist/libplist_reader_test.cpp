// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/libplist_reader.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "unit/adapters/libplist/binary_document.h"
#include "unit/base/comma_locale.h"

namespace pallimo::adapters::libplist {
namespace {

using base::Bytes;
using base::PropertyList;
using base::PropertyListArray;
using base::PropertyListDate;
using base::PropertyListDictionary;
using tests::arrayOf;
using tests::bigEndian;
using tests::BinaryDocument;
using tests::dictionaryOf;
using tests::textObject;

class LibplistReaderTest : public tests::UnderEachLocale {};

INSTANTIATE_TEST_SUITE_P(Locales, LibplistReaderTest, tests::kUserLocales, tests::localeName);

std::optional<PropertyList> read(std::string_view bytes) {
  return LibplistReader().read({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

std::optional<PropertyList> read(const BinaryDocument& document) { return read(document.bytes()); }

/// A document whose top is `element`.
std::string document(const std::string& element) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n" +
         element + "\n</plist>\n";
}

std::optional<PropertyList> readElement(const std::string& element) {
  return read(document(element));
}

PropertyList integer(std::int64_t value) { return PropertyList(value); }
PropertyList text(std::string words) { return PropertyList(std::move(words)); }

/// The number a document of it alone reads as; -1 when it is none.
double number(const std::string& element) {
  const auto value = readElement(element);
  return value ? value->numberOr(-1) : -1;
}

std::string repeated(std::string_view words, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += words;
  return all;
}

// Kinds

TEST_P(LibplistReaderTest, ReadsADictionaryInDocumentOrder) {
  EXPECT_EQ(readElement("<dict><key>z</key><true/><key>a</key><integer>1</integer></dict>"),
            PropertyList(PropertyListDictionary{{"z", PropertyList(true)}, {"a", integer(1)}}));
}

TEST_P(LibplistReaderTest, ReadsAnArrayInDocumentOrder) {
  EXPECT_EQ(readElement("<array><integer>2</integer><string>b</string><false/></array>"),
            PropertyList(PropertyListArray{integer(2), text("b"), PropertyList(false)}));
}

TEST_P(LibplistReaderTest, ReadsEmptyContainersAndTexts) {
  EXPECT_EQ(readElement("<dict/>"), PropertyList());
  EXPECT_EQ(readElement("<dict></dict>"), PropertyList());
  EXPECT_EQ(readElement("<array/>"), PropertyList(PropertyListArray()));
  EXPECT_EQ(readElement("<string/>"), text(""));
  EXPECT_EQ(readElement("<string></string>"), text(""));
}

TEST_P(LibplistReaderTest, ReadsContainersInContainers) {
  EXPECT_EQ(
      readElement("<dict><key>a</key><array><dict><key>b</key><array/></dict></array></dict>"),
      PropertyList(PropertyListDictionary{
          {"a", PropertyList(PropertyListArray{PropertyList(
                    PropertyListDictionary{{"b", PropertyList(PropertyListArray())}})})}}));
}

TEST_P(LibplistReaderTest, ReadsTheKeysOfEachDictionaryInAnArray) {
  const auto entry = [](const std::string& key) { return "<key>" + key + "</key><true/>"; };
  const auto dictionary = [](const std::vector<std::string>& keys) {
    PropertyListDictionary entries;
    for (const std::string& key : keys) entries.emplace_back(key, PropertyList(true));
    return PropertyList(std::move(entries));
  };
  EXPECT_EQ(readElement("<array><dict>" + entry("a") + entry("b") + "</dict><dict>" + entry("a") +
                        entry("b") + "</dict><dict>" + entry("b") + entry("ab") + entry("c") +
                        "</dict><dict/><dict>" + entry("b") + "</dict></array>"),
            PropertyList(PropertyListArray{dictionary({"a", "b"}), dictionary({"a", "b"}),
                                           dictionary({"b", "ab", "c"}), dictionary({}),
                                           dictionary({"b"})}));
}

TEST_P(LibplistReaderTest, ReadsTextsWithEntitiesAndForeignLetters) {
  EXPECT_EQ(readElement("<string>a &amp; b &lt;c&gt; &#65;&#x42; ä€😀</string>"),
            text("a & b <c> AB ä€😀"));
}

TEST_P(LibplistReaderTest, ReadsKeysWithEntitiesAndWithoutLetters) {
  EXPECT_EQ(
      readElement("<dict><key>a&amp;b</key><true/><key></key><false/></dict>"),
      PropertyList(PropertyListDictionary{{"a&b", PropertyList(true)}, {"", PropertyList(false)}}));
}

TEST_P(LibplistReaderTest, ReadsAnEmptyKeyInOneTag) {
  EXPECT_EQ(
      readElement("<dict><key/><true/><key>a</key><false/></dict>"),
      PropertyList(PropertyListDictionary{{"", PropertyList(true)}, {"a", PropertyList(false)}}));
}

TEST_P(LibplistReaderTest, ReadsTextsAroundCommentsAndCDATA) {
  EXPECT_EQ(readElement("<string>a<!-- <b> -->c<![CDATA[<d> &amp;]]>e</string>"),
            text("ac<d> &amp;e"));
}

TEST_P(LibplistReaderTest, ReadsBooleansAsBooleansNotAsNumbers) {
  EXPECT_EQ(readElement("<true/>"), PropertyList(true));
  EXPECT_EQ(readElement("<false/>"), PropertyList(false));
  EXPECT_FALSE(readElement("<true/>")->isNumber());
}

TEST_P(LibplistReaderTest, ReadsData) {
  EXPECT_EQ(readElement("<data>aGV5AP8=</data>"), PropertyList(Bytes{'h', 'e', 'y', 0, 0xFF}));
}

TEST_P(LibplistReaderTest, ReadsADateAsSecondsSince2001) {
  EXPECT_EQ(readElement("<date>2001-01-01T00:00:10Z</date>"), PropertyList(PropertyListDate{10}));
  EXPECT_EQ(readElement("<date>2023-04-01T13:18:36Z</date>"),
            PropertyList(PropertyListDate{702047916}));
}

// Numbers

TEST_P(LibplistReaderTest, ReadsRealsWithADecimalPoint) {
  EXPECT_EQ(number("<real>2.75</real>"), 2.75);
  EXPECT_EQ(number("<real>-0.5</real>"), -0.5);
  EXPECT_EQ(number("<real>0</real>"), 0.0);
  EXPECT_EQ(number("<real>338</real>"), 338.0);
}

TEST_P(LibplistReaderTest, ReadsRealsWithAnExponent) {
  EXPECT_EQ(number("<real>1.5e+09</real>"), 1.5e9);
  EXPECT_EQ(number("<real>1.02287e+09</real>"), 1.02287e9);
  EXPECT_EQ(number("<real>6.25E-2</real>"), 0.0625);
}

TEST_P(LibplistReaderTest, ReadsRealsThatAreNotFinite) {
  EXPECT_TRUE(std::isnan(number("<real>nan</real>")));
  EXPECT_EQ(number("<real>inf</real>"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(number("<real>-infinity</real>"), -std::numeric_limits<double>::infinity());
}

TEST_P(LibplistReaderTest, KeepsAllBitsOfIntegers) {
  EXPECT_EQ(readElement("<integer>0</integer>"), integer(0));
  EXPECT_EQ(readElement("<integer>-5</integer>"), integer(-5));
  EXPECT_EQ(readElement("<integer>9007199254740993</integer>"), integer(9007199254740993));
  EXPECT_EQ(readElement("<integer>9223372036854775807</integer>"), integer(INT64_MAX));
  EXPECT_EQ(readElement("<integer>-9223372036854775808</integer>"), integer(INT64_MIN));
}

TEST_P(LibplistReaderTest, KeepsIntegersBeyondTheSignedOnes) {
  EXPECT_EQ(readElement("<integer>9223372036854775808</integer>"),
            PropertyList(std::uint64_t{9223372036854775808U}));
  EXPECT_EQ(readElement("<integer>18446744073709551615</integer>"), PropertyList(UINT64_MAX));
}

TEST_P(LibplistReaderTest, TellsANegativeFromAHugeIntegerOfTheSameBits) {
  EXPECT_EQ(
      readElement("<array><integer>-5</integer><integer>18446744073709551611</integer></array>"),
      PropertyList(PropertyListArray{integer(-5), PropertyList(UINT64_MAX - 4)}));
}

TEST_P(LibplistReaderTest, ReadsIntegersWithSpacesASignOrInHexadecimal) {
  EXPECT_EQ(readElement("<integer> 7 </integer>"), integer(7));
  EXPECT_EQ(readElement("<integer>+7</integer>"), integer(7));
  EXPECT_EQ(readElement("<integer>0x1F</integer>"), integer(31));
}

// Repeated keys

TEST_P(LibplistReaderTest, LeavesTheLastValueOfARepeatedKey) {
  const std::string a1 = "<key>a</key><integer>1</integer>";
  const std::string b2 = "<key>b</key><integer>2</integer>";
  const std::string a3 = "<key>a</key><integer>3</integer>";
  EXPECT_EQ(readElement("<dict>" + a1 + b2 + a3 + "</dict>"),
            PropertyList(PropertyListDictionary{{"a", integer(3)}, {"b", integer(2)}}));
}

TEST_P(LibplistReaderTest, LeavesTheLastValueOfARepeatedKeyAmongThousands) {
  std::string entries;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 1'000; ++i) {
      entries += "<key>key" + std::to_string(i) + "</key><integer>" +
                 std::to_string(round * 1'000 + i) + "</integer>";
    }
  }
  const auto value = readElement("<dict>" + entries + "</dict>");
  ASSERT_TRUE(value);
  ASSERT_EQ(value->dictionary()->size(), 1'000U);
  for (int i = 0; i < 1'000; ++i) {
    EXPECT_EQ(value->dictionary()->at(static_cast<std::size_t>(i)).first,
              "key" + std::to_string(i));
    EXPECT_EQ(value->dictionary()->at(static_cast<std::size_t>(i)).second, integer(2'000 + i));
  }
}

TEST_P(LibplistReaderTest, LeavesTheLastValueOfARepeatedBinaryKey) {
  EXPECT_EQ(read(BinaryDocument{{dictionaryOf({1, 2, 1, 3, 4, 5}), textObject("a"), textObject("b"),
                                 "\x10\x01", "\x10\x02", "\x10\x03"}}),
            PropertyList(PropertyListDictionary{{"a", integer(3)}, {"b", integer(2)}}));
}

// What stands around the document

TEST_P(LibplistReaderTest, IgnoresBytesAfterTheDocument) {
  const std::string good = document("<string>a</string>");
  for (const std::string_view rest :
       {std::string_view("\n\n"), std::string_view("\0", 1), std::string_view("\n\0", 2),
        std::string_view("junk"), std::string_view("<plist"), std::string_view("\xFF\xFE"),
        std::string_view("\0<plist><array/></plist>", 24)}) {
    EXPECT_EQ(read(good + std::string(rest)), text("a")) << rest;
  }
}

TEST_P(LibplistReaderTest, ReadsADocumentWithoutPrologueOrPlistElement) {
  EXPECT_EQ(read("<plist version=\"1.0\"><string>a</string></plist>"), text("a"));
  EXPECT_EQ(read("<string>a</string>"), text("a"));
  EXPECT_EQ(read("<dict/>"), PropertyList());
}

TEST_P(LibplistReaderTest, ReadsADocumentBehindAByteOrderMark) {
  EXPECT_EQ(read("\xEF\xBB\xBF" + document("<string>a</string>")), text("a"));
}

TEST_P(LibplistReaderTest, ReadsADocumentWithCommentsAndInstructionsAnywhere) {
  EXPECT_EQ(
      read("<?xml version=\"1.0\"?><!-- a --><?b c?><plist><!-- <array> --><array><?d <array> ?>"
           "<!-- --><true/><!-- </array> --></array><!-- --></plist>"),
      PropertyList(PropertyListArray{PropertyList(true)}));
}

TEST_P(LibplistReaderTest, ReadsADocumentWithWindowsLineEnds) {
  EXPECT_EQ(read("<plist>\r\n<array>\r\n\t<true/>\r\n</array>\r\n</plist>\r\n"),
            PropertyList(PropertyListArray{PropertyList(true)}));
}

// What is no document

TEST_P(LibplistReaderTest, RefusesBytesThatAreNoPropertyList) {
  for (const std::string_view bytes :
       {std::string_view(), std::string_view(" \n"), std::string_view("hello"),
        std::string_view("{a=b;}"), std::string_view("<"), std::string_view("<plist>"),
        std::string_view("<html><body/></html>"), std::string_view("{\"a\":1}"),
        std::string_view("bplist"), std::string_view("bplist00"),
        std::string_view("\0\0\0\0", 4)}) {
    EXPECT_EQ(read(bytes), std::nullopt) << bytes;
  }
}

TEST_P(LibplistReaderTest, RefusesRandomBytes) {
  std::mt19937 random(20260101);
  for (int round = 0; round < 200; ++round) {
    std::string bytes(random() % 300, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    EXPECT_EQ(read(bytes), std::nullopt);
    EXPECT_EQ(read("bplist00" + bytes), std::nullopt);
  }
}

TEST_P(LibplistReaderTest, RefusesALeadingNUL) {
  EXPECT_EQ(read(std::string(1, '\0') + document("<dict/>")), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesEveryBeginningOfAnXMLDocument) {
  std::string whole = document(
      "<dict><key>a</key><array><integer>1</integer><real>2.5</real></array><key>b</key>"
      "<string>c</string><key>d</key><data>aGV5</data><key>e</key><true/></dict>");
  whole.pop_back();  // the line feed that ends the file belongs to no element
  ASSERT_TRUE(read(whole));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(read(std::string_view(whole).substr(0, length)), std::nullopt) << length;
  }
}

TEST_P(LibplistReaderTest, RefusesEveryBeginningOfABinaryDocument) {
  const std::string whole =
      BinaryDocument{{dictionaryOf({1, 2}), textObject("a"), arrayOf({3, 3}), "\x10\x05"}}.bytes();
  ASSERT_TRUE(read(whole));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(read(std::string_view(whole).substr(0, length)), std::nullopt) << length;
  }
}

TEST_P(LibplistReaderTest, RefusesTwoValuesInOnePlist) {
  EXPECT_EQ(readElement("<dict/><dict/>"), std::nullopt);
  EXPECT_EQ(readElement("<true/><false/>"), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesAPlistWithoutAValue) {
  EXPECT_EQ(readElement(""), std::nullopt);
  EXPECT_EQ(read("<plist/>"), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesUnknownAndMisplacedTags) {
  EXPECT_EQ(readElement("<array><bogus/></array>"), std::nullopt);
  EXPECT_EQ(readElement("<array>text<true/></array>"), std::nullopt);
  EXPECT_EQ(readElement("<dict><integer>1</integer></dict>"), std::nullopt);
  EXPECT_EQ(readElement("<dict><key>a</key><key>b</key><true/></dict>"), std::nullopt);
  EXPECT_EQ(readElement("<array></dict>"), std::nullopt);
  EXPECT_EQ(readElement("<string>a"), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesEntitiesThatADoctypeDeclares) {
  EXPECT_EQ(read("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>"),
            std::nullopt);
}

TEST_P(LibplistReaderTest, PrintsNothingWhateverTheBytesAre) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  for (const std::string element :
       {"", "text", "<bogus/>", "<array>", "<dict><true/></dict>", "<string>&bogus;</string>",
        "<integer>99999999999999999999</integer>", "<integer>x</integer>", "<real>x</real>",
        "<date>x</date>", "<data>!</data>", "<dict/><dict/>"}) {
    readElement(element);
  }
  read("<?xml");
  read("bplist00");
  read(BinaryDocument{{dictionaryOf({1, 1}), "\x10\x05"}});
  read(BinaryDocument{{"\xA1" + std::string(4, '\0')}});
  read(BinaryDocument{{std::string("\x61\xD8\x00", 3)}});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Nesting

std::string nested(std::size_t levels) {
  return document(repeated("<array>", levels) + repeated("</array>", levels));
}

TEST_P(LibplistReaderTest, ReadsNineHundredNinetyNineLevelsAndRefusesOneMore) {
  EXPECT_TRUE(read(nested(999)));
  EXPECT_EQ(read(nested(1'000)), std::nullopt);
  EXPECT_TRUE(read(tests::nestedArrays(999)));
  EXPECT_EQ(read(tests::nestedArrays(1'000)), std::nullopt);
}

TEST_P(LibplistReaderTest, SurvivesSixteenMebibytesOfNesting) {
  constexpr std::size_t kSize = 16 * 1024 * 1024;
  EXPECT_EQ(read(repeated("<array>", kSize / 7)), std::nullopt);
  EXPECT_EQ(read(nested(kSize / 15)), std::nullopt);
  EXPECT_EQ(read(repeated("<dict><key>a</key>", kSize / 18)), std::nullopt);
  EXPECT_EQ(read(tests::nestedArrays(kSize / 14)), std::nullopt);
}

TEST_P(LibplistReaderTest, IsNotFooledAboutItsDepth) {
  for (const std::string_view ends :
       {"<!-- </array> -->", "<?a </array> ?>", "<string><![CDATA[</array>]]></string>",
        "<string a=\"</array>\"/>", "<!DOCTYPE a [ </array> ]>", "</array/>", "<!--></array>-->"}) {
    EXPECT_EQ(read("<array>" + repeated("<array>" + std::string(ends), 200'000)), std::nullopt);
  }
}

// The half mebibyte of stack that macOS gives to threads; code that is not optimised has frames
// several times as large.
#if defined(__OPTIMIZE__)
constexpr std::size_t kSmallStack = 512 * 1024;
#else
constexpr std::size_t kSmallStack = 4 * 1024 * 1024;
#endif

/// Runs `task` on a thread with a small stack.
void onASmallStack(void (*task)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kSmallStack);
  pthread_t thread;
  const auto start = [](void* argument) -> void* {
    (*static_cast<void (**)()>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, start, &task), 0);
  pthread_attr_destroy(&attributes);
  pthread_join(thread, nullptr);
}

TEST_P(LibplistReaderTest, ReadsTheDeepestDocumentOnASmallStack) {
  onASmallStack([] {
    EXPECT_TRUE(read(nested(999)));
    EXPECT_TRUE(read(repeated("<dict><key>a</key>", 999) + "<true/>" + repeated("</dict>", 999)));
    EXPECT_TRUE(read(tests::nestedArrays(999)));
  });
}

// libplist would need seconds for the first and much more for the last.
TEST_P(LibplistReaderTest, RefusesLongTextsOfEntitiesInEveryPartOfADocument) {
  const std::string many = repeated("&amp;", 200'000);
  EXPECT_EQ(readElement("<string>" + many + "</string>"), std::nullopt);
  EXPECT_EQ(readElement("<dict><key>" + many + "</key><true/></dict>"), std::nullopt);
  EXPECT_EQ(readElement("<string><![CDATA[" + repeated("&", 200'000) + "]]></string>"),
            std::nullopt);
  EXPECT_EQ(readElement("<string>" + repeated("&#65;", 3'000'000) + "</string>"), std::nullopt);
}

TEST_P(LibplistReaderTest, ReadsTextsWithAGoodManyEntities) {
  EXPECT_EQ(readElement("<string>" + repeated("&amp;", 5'000) + "</string>"),
            text(repeated("&", 5'000)));
  EXPECT_EQ(readElement("<string>&lt;" + std::string(1'000'000, 'x') + "&gt;</string>"),
            text("<" + std::string(1'000'000, 'x') + ">"));
}

// Binary documents

TEST_P(LibplistReaderTest, ReadsEveryKindOfABinaryDocument) {
  const std::string half = bigEndian(0x3FE0000000000000, 8);
  const BinaryDocument all{{arrayOf({1, 2, 3, 4, 5, 6, 7, 8}), "\x09", "\x10\x05", "\x23" + half,
                            textObject("abc"), "\x61" + bigEndian(0x20AC, 2),
                            std::string("\x42\x00\xFF", 3),
                            "\x33" + bigEndian(0x4024000000000000, 8), dictionaryOf({4, 1})}};
  EXPECT_EQ(read(all),
            PropertyList(PropertyListArray{
                PropertyList(true), integer(5), PropertyList(0.5), text("abc"), text("€"),
                PropertyList(Bytes{0, 0xFF}), PropertyList(PropertyListDate{10}),
                PropertyList(PropertyListDictionary{{"abc", PropertyList(true)}})}));
}

TEST_P(LibplistReaderTest, KeepsAllBitsOfBinaryIntegers) {
  EXPECT_EQ(read(BinaryDocument{{"\x13" + bigEndian(static_cast<std::uint64_t>(-5), 8)}}),
            integer(-5));
  EXPECT_EQ(read(BinaryDocument{{"\x13" + bigEndian(INT64_MAX, 8)}}), integer(INT64_MAX));
  EXPECT_EQ(read(BinaryDocument{{"\x13" + bigEndian(std::uint64_t{1} << 63, 8)}}),
            integer(INT64_MIN));
  EXPECT_EQ(read(BinaryDocument{{"\x14" + bigEndian(UINT64_MAX, 16)}}), PropertyList(UINT64_MAX));
  EXPECT_EQ(read(BinaryDocument{{"\x10\xFF"}}), integer(255));
}

TEST_P(LibplistReaderTest, RefusesABinaryIntegerBeyond64Bits) {
  EXPECT_EQ(read(BinaryDocument{{"\x14" + bigEndian(1, 8) + bigEndian(5, 8)}}), std::nullopt);
  EXPECT_EQ(read(BinaryDocument{{"\x14" + bigEndian(UINT64_MAX, 8) + bigEndian(UINT64_MAX, 8)}}),
            std::nullopt);
  EXPECT_EQ(read(BinaryDocument{{"\x14" + bigEndian(0, 8)}}), std::nullopt);
}

TEST_P(LibplistReaderTest, ReadsAnArchiversReferenceAsItsXMLForm) {
  const PropertyList reference(PropertyListDictionary{{"CF$UID", integer(3)}});
  EXPECT_EQ(read(BinaryDocument{{"\x80\x03"}}), reference);
  EXPECT_EQ(readElement("<dict><key>CF$UID</key><integer>3</integer></dict>"), reference);
}

TEST_P(LibplistReaderTest, ReadsSharedObjectsEachTime) {
  EXPECT_EQ(read(BinaryDocument{{arrayOf({1, 1}), arrayOf({2}), "\x08"}}),
            PropertyList(PropertyListArray{PropertyList(PropertyListArray{PropertyList(false)}),
                                           PropertyList(PropertyListArray{PropertyList(false)})}));
}

TEST_P(LibplistReaderTest, RefusesABinaryDocumentThatUnfoldsIntoGigabytes) {
  BinaryDocument laughs;
  for (std::uint64_t i = 1; i <= 40; ++i) {
    laughs.objects.push_back(arrayOf(std::vector<std::uint64_t>(10, i)));
  }
  laughs.objects.push_back(textObject("ha"));
  EXPECT_EQ(read(laughs), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesABinaryDocumentThatContainsItself) {
  EXPECT_EQ(read(BinaryDocument{{arrayOf({0})}}), std::nullopt);
  EXPECT_EQ(read(BinaryDocument{{dictionaryOf({1, 0}), textObject("a")}}), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesABinaryKeyThatIsNoText) {
  EXPECT_EQ(read(BinaryDocument{{dictionaryOf({1, 1}), "\x10\x05"}}), std::nullopt);
}

TEST_P(LibplistReaderTest, RefusesABinaryKeyWithANUL) {
  EXPECT_EQ(read(BinaryDocument{{dictionaryOf({1, 2}), std::string("\x62\0k\0\0", 5), "\x09"}}),
            std::nullopt);
}

// A part of it

std::optional<PropertyList> readOnly(std::string_view bytes, const ports::Wanted& wanted) {
  return LibplistReader().readOnly(
      {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, wanted);
}

TEST_P(LibplistReaderTest, HoldsTheWantedEntriesAlone) {
  const std::string element =
      "<dict><key>long</key><array><true/></array><key>a</key><array>"
      "<dict><key>b</key><integer>1</integer><key>long</key><dict/></dict>"
      "<dict><key>b</key><integer>2</integer><key>long</key><string>x</string></dict>"
      "</array></dict>";
  EXPECT_EQ(readOnly(document(element), {{"a", {{"b"}}}}),
            readElement("<dict><key>a</key><array><dict><key>b</key><integer>1</integer></dict>"
                        "<dict><key>b</key><integer>2</integer></dict></array></dict>"));
}

TEST_P(LibplistReaderTest, HoldsTheLastOfSeveralWantedEntriesOfAKey) {
  const std::string element =
      "<dict><key>a</key><true/><key>b</key><true/><key>a</key><false/></dict>";
  EXPECT_EQ(readOnly(document(element), {{"a"}}), readElement("<dict><key>a</key><false/></dict>"));
}

TEST_P(LibplistReaderTest, APartOfAKeyIsNotThatKey) {
  EXPECT_EQ(readOnly(document("<dict><key>longer</key><string>long</string></dict>"), {{"long"}}),
            PropertyList());
}

TEST_P(LibplistReaderTest, WhatIsLeftOutIsCheckedAllTheSame) {
  for (const std::string& broken : std::vector<std::string>{
           "<key>x</key><array><integer>2.5</integer></array>", "<key>x</key>",
           "<key>x</key><bogus/>", "<key>x</key><string>&bogus;</string>", "<true/>",
           "<key>x</key><data>!</data>", "<key>x</key><string>&amp;</string>",
           "<key>x</key><string>" + repeated("&amp;", 20'000) + "</string>"}) {
    const std::string element = "<dict><key>a</key><true/>" + broken + "</dict>";
    EXPECT_EQ(readOnly(document(element), {{"a"}}).has_value(), readElement(element).has_value())
        << broken;
  }
}

// Such a key is pending in libplist until the next value, wherever that is.
TEST_P(LibplistReaderTest, AKeyWithoutAValueIsMissedWhereverItStands) {
  const std::string element =
      "<dict><key>a</key><dict><key>b</key></dict><key>x</key><true/></dict>";
  EXPECT_EQ(readOnly(document(element), {{"a"}}).has_value(), readElement(element).has_value());
}

TEST_P(LibplistReaderTest, ABinaryDocumentCanBeReadInPartToo) {
  const BinaryDocument binary{
      {dictionaryOf({1, 2, 3, 3}), textObject("a"), textObject("b"), "\x09"}};
  EXPECT_EQ(readOnly(binary.bytes(), {{"b"}}), readElement("<dict><key>b</key><true/></dict>"));
}

TEST_P(LibplistReaderTest, AReferenceIsADictionaryOfWhichNothingMayBeWanted) {
  const BinaryDocument binary{{dictionaryOf({1, 2}), textObject("a"), "\x80\x03"}};
  EXPECT_EQ(readOnly(binary.bytes(), {{"a", {{"b"}}}}),
            readElement("<dict><key>a</key><dict></dict></dict>"));
  EXPECT_EQ(readOnly(binary.bytes(), {{"a", {{"CF$UID"}}}}), read(binary));
  EXPECT_EQ(readOnly(binary.bytes(), {{"a"}}), read(binary));
}

}  // namespace
}  // namespace pallimo::adapters::libplist
