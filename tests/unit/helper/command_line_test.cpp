// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/command_line.h"

#include <gtest/gtest.h>

namespace pallimo::helper {
namespace {

TEST(HelperCommandLine, WithoutArgumentsTheHelperServes) {
  EXPECT_EQ(answerTo({}, "1.2.3"), std::nullopt);
}

TEST(HelperCommandLine, TellsItsVersion) {
  EXPECT_EQ(answerTo({"--version"}, "1.2.3"), (Answer{"com.ostrovane.powermetrics 1.2.3\n", 0}));
}

TEST(HelperCommandLine, TellsWhatItIsFor) {
  const auto answer = answerTo({"--help"}, "1.2.3");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->text, R"(Usage: com.ostrovane.powermetrics

Takes samples with powermetrics for Pallimo, which installs this program and has
it started. There is nothing to start by hand.

  --version              print the version
  --help                 print this help
)");
  EXPECT_EQ(answer->status, 0);
}

TEST(HelperCommandLine, RefusesEverythingElseWithoutRepeatingIt) {
  const Answer refusal{"com.ostrovane.powermetrics: takes no such argument; see --help\n", 2};
  EXPECT_EQ(answerTo({"--hel"}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({"--helpful"}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({"-h"}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({""}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({"/usr/bin/powermetrics"}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({"--help", "--version"}, "1.2.3"), refusal);
  EXPECT_EQ(answerTo({"--version", "more"}, "1.2.3"), refusal);
}

}  // namespace
}  // namespace pallimo::helper
