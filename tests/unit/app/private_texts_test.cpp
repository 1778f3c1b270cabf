// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/private_texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pallimo::app {
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
  EXPECT_EQ(shown("\xC3\xA9"
                  "bob",
                  {"bob"}),
            "??bob");
}

TEST(PrivateTexts, DoNotTakeALetterOrAProductForAName) {
  EXPECT_EQ(shown("E-Cluster", {"e"}), "E-Cluster");
  EXPECT_EQ(shown("iMac21,1", {"iMac.local", "imac"}), "iMac21,1");
  EXPECT_EQ(shown("MacBookPro18,3", {"MacBook-Pro-2", "macbookpro"}), "MacBookPro18,3");
  EXPECT_EQ(shown("Apple M3 Max", {"max"}), "Apple M3 Max");
  EXPECT_EQ(shown("Maxwell", {"maxwell"}), "(hidden)");
  EXPECT_EQ(shown("host 4711", {"4711"}), "host (hidden)");
  EXPECT_EQ(shown("anything", {""}), "anything");
}

TEST(PrivateTexts, HideAPathIntoAHomeUpToTheEnd) {
  EXPECT_EQ(shown("at /Users/Some One/Library/x"), "at (hidden)");
  EXPECT_EQ(shown("/home/carol/.config"), "(hidden)");
  EXPECT_EQ(shown("file:///root/x"), "file://(hidden)");
  EXPECT_EQ(shown("disk/Users/carol"), "disk(hidden)");
  EXPECT_EQ(shown("/usr/bin/powermetrics"), "/usr/bin/powermetrics");
  EXPECT_EQ(shown("/rooted"), "/rooted");
  EXPECT_EQ(shown("gpu/root"), "gpu/root");
  EXPECT_EQ(shown("list[]/root/x"), "list[]/root/x");
}

TEST(PrivateTexts, HideWhatLooksLikeASerialNumber) {
  EXPECT_EQ(shown("C02XG0FDH7JY"), "(hidden)");
  EXPECT_EQ(shown("panel D7PQ41X9LM!"), "panel (hidden)!");
  EXPECT_EQ(shown("ABCDEFGHIJKL"), "ABCDEFGHIJKL");
  EXPECT_EQ(shown("123456789012"), "123456789012");
  EXPECT_EQ(shown("AB12CD34E"), "AB12CD34E");
}

TEST(PrivateTexts, HideUuidsAddressesAndMail) {
  EXPECT_EQ(shown("id 8B4B2C1E-7d3f-4A59-9C62-0011AABBCCDD"), "id (hidden)");
  EXPECT_EQ(shown("en0 a4:83:e7:01:23:45 up"), "en0 (hidden) up");
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
}  // namespace pallimo::app
