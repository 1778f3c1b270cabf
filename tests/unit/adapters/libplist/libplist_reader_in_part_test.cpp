// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "unit/adapters/libplist/only_wanted.h"

namespace pallimo::adapters::libplist {
namespace {

/// A document made of the words of many, mostly sound and now and then not.
std::string scrambled(std::mt19937& random) {
  static const std::vector<std::string> values = {"<true/>",
                                                  "<integer>1</integer>",
                                                  "<real>1.5</real>",
                                                  "<string>s</string>",
                                                  "<dict/>",
                                                  "<date>2026-07-09T14:26:48Z</date>",
                                                  "<data>AA==</data>",
                                                  "<!-- c -->",
                                                  "<integer>2.5</integer>",
                                                  "<string>&amp;</string>",
                                                  "<array></array>",
                                                  "<real>nan</real>",
                                                  "<key>k</key>",
                                                  "</dict>",
                                                  "</array>"};
  static const std::vector<std::string> keys = {"a", "b", "x", "y", "a&#98;"};
  const auto pick = [&random](const auto& from) { return from[random() % from.size()]; };
  std::string text = random() % 2 == 0 ? "<plist version=\"1.0\">" : "";
  std::vector<bool> isDictionary{true};
  text += "<dict>";
  while (!isDictionary.empty()) {
    const bool isEntry = isDictionary.back();
    if (random() % 4 == 0) {
      text += isEntry ? "</dict>" : "</array>";
      isDictionary.pop_back();
      continue;
    }
    if (isEntry != (random() % 64 == 0)) text += "<key>" + pick(keys) + "</key>";
    if (random() % 3 == 0 && isDictionary.size() < 12) {
      isDictionary.push_back(random() % 2 == 0);
      text += isDictionary.back() ? "<dict>" : "<array>";
    } else {
      // The first four are the usual ones.
      text += values[random() % (random() % 8 == 0 ? values.size() : 4)];
    }
  }
  return text;
}

TEST(LibplistReaderInPart, ReadsOfRandomDocumentsWhatTheWholeHolds) {
  const ports::Wanted wanted{{"a", {{"b"}, {"x", {{"a"}}}}}, {"b"}};
  std::mt19937 random(20261121);
  int documents = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string document = scrambled(random);
    const base::Bytes bytes(document.begin(), document.end());
    std::optional<base::PropertyList> expected = LibplistReader().read(bytes);
    if (expected) expected = tests::onlyWanted(*expected, wanted);
    ASSERT_TRUE(tests::isSame(LibplistReader().readOnly(bytes, wanted), expected)) << document;
    documents += expected ? 1 : 0;
  }
  // Enough of both sorts.
  EXPECT_GT(documents, 4'000);
  EXPECT_LT(documents, 19'000);
}

}  // namespace
}  // namespace pallimo::adapters::libplist
