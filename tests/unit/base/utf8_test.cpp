// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/utf8.h"

#include <gtest/gtest.h>

namespace pallimo::base {
namespace {

/// What became of the bytes, every replacement written as "?".
std::string repaired(std::string_view bytes) {
  std::string text = repairedUtf8(bytes);
  for (std::size_t at = 0; (at = text.find("\xEF\xBF\xBD", at)) != std::string::npos;) {
    text.replace(at, 3, "?");
  }
  return text;
}

void expectUntouched(const std::string& text) { EXPECT_EQ(repairedUtf8(text), text); }

TEST(RepairedUtf8, LeavesValidTextAlone) {
  expectUntouched("");
  expectUntouched("Apple M2 Pro");
  expectUntouched("Ca\xC3\xB1on \xE2\x84\x83 \xF0\x9F\x8D\x8F");
}

TEST(RepairedUtf8, LeavesNulAlone) { expectUntouched(std::string("a\0b", 3)); }

TEST(RepairedUtf8, LeavesAReplacementCharacterAlone) { expectUntouched("\xEF\xBF\xBD"); }

TEST(RepairedUtf8, LeavesTheFirstAndLastSequenceOfEachLengthAlone) {
  expectUntouched("\x7F");
  expectUntouched("\xC2\x80 \xDF\xBF");
  expectUntouched("\xE0\xA0\x80 \xEF\xBF\xBF");
  expectUntouched("\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF");
}

TEST(RepairedUtf8, LeavesTheNeighboursOfTheSurrogatesAlone) {
  expectUntouched("\xED\x9F\xBF \xEE\x80\x80");
}

TEST(RepairedUtf8, WritesTheReplacementCharacter) {
  EXPECT_EQ(repairedUtf8("a\xFFz"), "a\xEF\xBF\xBDz");
}

TEST(RepairedUtf8, ReplacesEachByteThatBeginsNothing) {
  EXPECT_EQ(repaired("\x80\xBF"), "??");
  EXPECT_EQ(repaired("\xC0\xC1\xF5\xFE\xFF"), "?????");
}

TEST(RepairedUtf8, ReplacesABegunSequenceOnce) {
  EXPECT_EQ(repaired("\xC3z"), "?z");
  EXPECT_EQ(repaired("\xE2\x84z"), "?z");
  EXPECT_EQ(repaired("\xF0\x9F\x8Dz"), "?z");
}

TEST(RepairedUtf8, ReplacesASequenceThatTheEndCutsOffOnce) {
  EXPECT_EQ(repaired("M2\xF0\x9F\x8D"), "M2?");
  EXPECT_EQ(repaired("M2\xE2"), "M2?");
}

TEST(RepairedUtf8, GoesOnWithTheByteThatBrokeASequence) {
  EXPECT_EQ(repaired("\xE2\xC3\xA9"), "?\xC3\xA9");
  EXPECT_EQ(repaired("\xF0\x9F\xE2\x84\x83"), "?\xE2\x84\x83");
}

TEST(RepairedUtf8, ReplacesEachByteOfAnOverlongForm) {
  EXPECT_EQ(repaired("\xC1\x81"), "??");
  EXPECT_EQ(repaired("\xE0\x9F\xBF"), "???");
  EXPECT_EQ(repaired("\xF0\x8F\xBF\xBF"), "????");
}

TEST(RepairedUtf8, ReplacesEachByteOfASurrogate) {
  EXPECT_EQ(repaired("\xED\xA0\x80"), "???");
  EXPECT_EQ(repaired("\xED\xBF\xBF"), "???");
}

TEST(RepairedUtf8, ReplacesEachByteOfANumberThatIsTooLarge) {
  EXPECT_EQ(repaired("\xF4\x90\x80\x80"), "????");
  EXPECT_EQ(repaired("\xF5\x80\x80\x80"), "????");
}

// Examples of the Unicode standard's own.
TEST(RepairedUtf8, ReplacesEachMaximalSubpart) {
  EXPECT_EQ(repaired("a\xF1\x80\x80\xE1\x80\xC2"
                     "b\x80"
                     "c\x80\xBF"
                     "d"),
            "a???b?c??d");
  EXPECT_EQ(repaired("\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
                     "A"),
            "????A");
}

TEST(TextBeforeNul, EndsAtTheFirstNul) {
  EXPECT_EQ(textBeforeNul({'M', 'a', 'c', 0, 'x', 0}), "Mac");
  EXPECT_EQ(textBeforeNul({0}), "");
}

TEST(TextBeforeNul, IsNothingWithoutANul) {
  EXPECT_EQ(textBeforeNul({'M', 'a', 'c'}), std::nullopt);
  EXPECT_EQ(textBeforeNul({}), std::nullopt);
}

TEST(TextBeforeNul, IsRepaired) { EXPECT_EQ(textBeforeNul({'M', 0xFF, 0}), "M\xEF\xBF\xBD"); }

}  // namespace
}  // namespace pallimo::base
