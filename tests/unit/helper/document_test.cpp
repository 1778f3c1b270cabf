// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/document.h"

#include <gtest/gtest.h>

#include <string>

namespace pallimo::helper {
namespace {

using namespace std::string_literals;

std::string trimmed(const std::string& printed) {
  const auto document = trimDocument(base::Bytes(printed.begin(), printed.end()));
  return {document.begin(), document.end()};
}

TEST(Document, LosesNulBytesInFrontOfAText) { EXPECT_EQ(trimmed("\0\0<plist/>"s), "<plist/>"); }

TEST(Document, LosesNulBytesBehindAText) { EXPECT_EQ(trimmed("<plist/>\0\0"s), "<plist/>"); }

TEST(Document, KeepsNulBytesWithinAText) { EXPECT_EQ(trimmed("\0a\0b\0"s), "a\0b"s); }

TEST(Document, KeepsLineEnds) { EXPECT_EQ(trimmed("\n<plist/>\n\0"s), "\n<plist/>\n"); }

TEST(Document, LeavesABinaryOneAsItIs) {
  EXPECT_EQ(trimmed("bplist00\xd0\0\0\0"s), "bplist00\xd0\0\0\0"s);
}

TEST(Document, TakesTheBeginningOfTheBinaryMarkForText) { EXPECT_EQ(trimmed("bplis\0"s), "bplis"); }

TEST(Document, OfNulBytesAloneIsEmpty) { EXPECT_EQ(trimmed("\0\0\0"s), ""); }

TEST(Document, OfNothingIsEmpty) { EXPECT_EQ(trimmed(""), ""); }

}  // namespace
}  // namespace pallimo::helper
