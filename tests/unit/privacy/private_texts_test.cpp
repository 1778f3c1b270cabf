// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/private_texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pallimo::privacy {
namespace {

/// The text as a report of alice's shows it.
std::string shown(const std::string& text, const std::vector<std::string>& words = {"alice"}) {
  return PrivateTexts(words).shown(text);
}

TEST(PrivateTexts, LeaveOtherTextsAsTheyAre) {
  for (const char* text : {"Mac14,9", "Apple M2 Pro", "E0-Cluster", "processor/clusters[]/freq_hz",
                           "Version 14.5 (Build 23F79)", ""}) {
    EXPECT_EQ(shown(text), text);
  }
}

TEST(PrivateTexts, HideTheWordsWhereverTheyStand) {
  EXPECT_EQ(shown("alice"), "(hidden)");
  EXPECT_EQ(shown("the Mac of Alice."), "the Mac of (hidden).");
  EXPECT_EQ(shown("xALICEs-cluster"), "x(hidden)s-cluster");
  EXPECT_EQ(shown("alice and alice"), "(hidden) and (hidden)");
  EXPECT_EQ(shown("by Bob Smith of host7", {"bob smith", "host7"}), "by (hidden) of (hidden)");
}

TEST(PrivateTexts, HideWordsThatOverlapAsOne) {
  EXPECT_EQ(shown("1 janes-mac 2", {"jane", "janes-mac"}), "1 (hidden) 2");
}

TEST(PrivateTexts, HideShortWordsOnlyWhereTheyStandAlone) {
  EXPECT_EQ(shown("bob", {"bob"}), "(hidden)");
  EXPECT_EQ(shown("of Bob's", {"bob"}), "of (hidden)'s");
  EXPECT_EQ(shown("kaboboom", {"bob"}), "kaboboom");
  EXPECT_EQ(shown("bobsled", {"bob"}), "bobsled");
  EXPECT_EQ(shown("1204", {"20"}), "1204");
  EXPECT_EQ(shown("\xC3\xA9"
                  "bob",
                  {"bob"}),
            "??bob");
}

TEST(PrivateTexts, HideNamesOfTwoLettersButNoSingleLetter) {
  EXPECT_EQ(shown("of Jo.", {"jo"}), "of (hidden).");
  EXPECT_EQ(shown("plan b", {"b"}), "plan b");
}

TEST(PrivateTexts, DigitsAnEscapeAndAGenitiveEndAWord) {
  EXPECT_EQ(shown("Bobs MacBook", {"bob"}), "(hidden)s MacBook");
  EXPECT_EQ(shown("bob2", {"bob"}), "(hidden)2");
  EXPECT_EQ(shown("7BOB", {"bob"}), "7(hidden)");
  EXPECT_EQ(shown("Wilhelmina%20Doe", {"wilhelmina", "doe"}), "(hidden)%20(hidden)");
  EXPECT_EQ(shown("of%2Fbob%2Fx", {"bob"}), "of%2F(hidden)%2Fx");
}

TEST(PrivateTexts, HideANameHoweverItsLettersAreWritten) {
  for (const char* name :
       {"j\xC3\xB6rg", "J\xC3\x96RG", "jo\xCC\x88rg", "J%C3%B6rg", "j\\u00f6rg"}) {
    EXPECT_EQ(shown(std::string("of ") + name + ".", {"j\xC3\xB6rg"}), "of (hidden).") << name;
    EXPECT_EQ(shown(std::string("of ") + name + ".", {"jo\xCC\x88rg"}), "of (hidden).") << name;
  }
  EXPECT_EQ(shown("\xC3\x96zg\xC3\xBCr", {"\xC3\xB6zg\xC3\xBCr"}), "(hidden)");
  EXPECT_EQ(shown("o\xCC\x88zgu\xCC\x88r", {"\xC3\xB6zg\xC3\xBCr"}), "(hidden)");
  EXPECT_EQ(shown("\xC3\x96"
                  "a"
                  "\xC3\xB6",
                  {"\xC3\xB6"
                   "a"
                   "\xC3\xB6"}),
            "(hidden)");
  EXPECT_EQ(shown("jarg jrg", {"j\xC3\xB6rg"}), "jarg jrg");
}

TEST(PrivateTexts, DoNotTakeALetterForAName) {
  EXPECT_EQ(shown("E-Cluster", {"e"}), "E-Cluster");
  EXPECT_EQ(shown("Maxwell", {"maxwell"}), "(hidden)");
  EXPECT_EQ(shown("host 4711", {"4711"}), "host (hidden)");
  EXPECT_EQ(shown("anything", {""}), "anything");
}

TEST(PrivateTexts, AUserMayBeCalledLikeAProduct) {
  const PrivateTexts ofMax({"Max", "Max Air", "/Users/max", "carol"});
  EXPECT_EQ(ofMax.shown("cluster of max"), "cluster of (hidden)");
  EXPECT_EQ(ofMax.shownProduct("Apple M3 Max"), "Apple M3 Max");
  EXPECT_EQ(ofMax.shownProduct("Mac of Carol"), "Mac of (hidden)");
  EXPECT_EQ(ofMax.shownProduct("Max C02XG0FDH7JY"), "Max (hidden)");
}

TEST(PrivateTexts, HideAPathIntoAHomeUpToTheEnd) {
  EXPECT_EQ(shown("at /Users/Some One/Library/x"), "at (hidden)");
  EXPECT_EQ(shown("/home/carol/.config"), "(hidden)");
  EXPECT_EQ(shown("file:///root/x"), "file:(hidden)");
  EXPECT_EQ(shown("disk/Users/carol"), "disk(hidden)");
  EXPECT_EQ(shown("/rooted at /root/secret"), "/rooted at (hidden)");
  EXPECT_EQ(shown("/var/root"), "(hidden)");
  EXPECT_EQ(shown("/private/var/folders/x"), "(hidden)");
  EXPECT_EQ(shown("/usr/bin/powermetrics"), "/usr/bin/powermetrics");
  EXPECT_EQ(shown("/rooted"), "/rooted");
  EXPECT_EQ(shown("gpu/root"), "gpu/root");
  EXPECT_EQ(shown("list[]/root/x"), "list[]/root/x");
}

TEST(PrivateTexts, HideAHomeOfAnotherSystemOrInAnotherSpelling) {
  for (const char* path : {"\\/Users\\/carol", "%2FUsers%2Fcarol", "%2fhome%2Fcarol/x",
                           "\\Users\\carol", "\\\\Users\\\\carol", "~carol/x", "~/Library"}) {
    EXPECT_EQ(shown(std::string("at ") + path), "at (hidden)") << path;
  }
  EXPECT_EQ(shown("C:\\Users\\carol"), "C:(hidden)");
  EXPECT_EQ(shown("~5 ms, a~b, ~"), "~5 ms, a~b, ~");
  EXPECT_EQ(shown("busers/x, /homes/x"), "busers/x, /homes/x");
}

TEST(PrivateTexts, HideWhatLooksLikeASerialNumber) {
  EXPECT_EQ(shown("C02XG0FDH7JY"), "(hidden)");
  EXPECT_EQ(shown("panel D7PQ41X9LM!"), "panel (hidden)!");
  EXPECT_EQ(shown("c02xg0fdh7jy"), "(hidden)");
  EXPECT_EQ(shown("snC02XG0FDH7JY"), "(hidden)");
  EXPECT_EQ(shown("SN:c02xg0fdh7jy_x"), "SN:(hidden)_x");
  EXPECT_EQ(shown("serialHJKLQWRT7XofMine"), "serial(hidden)ofMine");
  EXPECT_EQ(shown("MacBookPro18,3 macbookpro18 residency10"),
            "MacBookPro18,3 macbookpro18 residency10");
  EXPECT_EQ(shown("ABCDEFGHIJKL"), "ABCDEFGHIJKL");
  EXPECT_EQ(shown("123456789012"), "123456789012");
  EXPECT_EQ(shown("AB12CD34E"), "AB12CD34E");
}

TEST(PrivateTexts, HideUuidsAddressesAndMail) {
  EXPECT_EQ(shown("id 8B4B2C1E-7d3f-4A59-9C62-0011AABBCCDD"), "id (hidden)");
  EXPECT_EQ(shown("en0 a4:83:e7:01:23:45 up"), "en0 (hidden) up");
  EXPECT_EQ(shown("en0:a4:83:e7:01:23:45"), "en0:(hidden)");
  EXPECT_EQ(shown("a4-83-E7-01-23-45"), "(hidden)");
  EXPECT_EQ(shown("disk-8B4B2C1E-7d3f-4A59-9C62-0011AABBCCDD-x"), "disk-(hidden)-x");
  EXPECT_EQ(shown("12:34:56 and 01-02-03"), "12:34:56 and 01-02-03");
  EXPECT_EQ(shown("write to carol@example.org, please"), "write to (hidden), please");
  EXPECT_EQ(shown("8 @ 3.2 GHz"), "8 @ 3.2 GHz");
}

TEST(PrivateTexts, AreOneShortLineOfAscii) {
  EXPECT_EQ(shown("a\nb\x1b[1m\x7f\xFF"), "a?b?[1m??");
  EXPECT_EQ(shown(std::string(60, 'x')), std::string(60, 'x'));
  EXPECT_EQ(shown(std::string(61, 'x')), std::string(60, 'x') + "...");
}

TEST(PrivateTexts, HideAWordThatTheCutWouldHaveSplit) {
  EXPECT_EQ(shown(std::string(57, '-') + "alice").find("ali"), std::string::npos);
}

}  // namespace
}  // namespace pallimo::privacy
