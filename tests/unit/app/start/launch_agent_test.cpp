// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "app/start/command_line.h"

namespace pallimo::app {
namespace {

/// The property list that starts the app with a Mac, without a window.
class LaunchAgentTest : public testing::Test {
 protected:
  LaunchAgentTest() {
    std::ifstream file(PALLIMO_SOURCE_DIR "/packaging/macos/com.ostrovane.pallimo.serve.plist",
                       std::ios::binary);
    const base::Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    agent_ = adapters::libplist::LibplistReader().read(bytes).value_or(base::PropertyList());
  }

  std::string text(const char* key) const {
    const base::PropertyList* value = agent_.find(key);
    return value != nullptr && value->text() != nullptr ? *value->text() : "absent";
  }
  std::vector<std::string> command() const {
    std::vector<std::string> words;
    const base::PropertyList* value = agent_.find("ProgramArguments");
    if (value == nullptr || value->array() == nullptr) return words;
    for (const base::PropertyList& word : *value->array()) words.push_back(*word.text());
    return words;
  }

  base::PropertyList agent_;
};

TEST_F(LaunchAgentTest, RunsTheAppOfTheBundleWithoutAWindow) {
  std::vector<std::string> words = command();
  ASSERT_FALSE(words.empty());
  EXPECT_EQ(words.front(), "/Applications/Pallimo.app/Contents/MacOS/pallimo");
  words.erase(words.begin());
  const auto parsed = parseCommandLine(words);
  ASSERT_TRUE(std::holds_alternative<Options>(parsed));
  Options expected;
  expected.headless = true;
  expected.format = OutputFormat::csv;
  expected.serve = ports::ListenAddress{"127.0.0.1", 9123};
  EXPECT_EQ(std::get<Options>(parsed), expected);
}

TEST_F(LaunchAgentTest, StartsAtLogInAndAgainWhenItEnds) {
  for (const char* key : {"RunAtLoad", "KeepAlive"}) {
    const base::PropertyList* value = agent_.find(key);
    ASSERT_TRUE(value != nullptr && value->boolean() != nullptr) << key;
    EXPECT_TRUE(*value->boolean()) << key;
  }
}

TEST_F(LaunchAgentTest, IsNamedAsItsFileAndKeepsNoOutput) {
  EXPECT_EQ(text("Label"), "com.ostrovane.pallimo.serve");
  EXPECT_EQ(text("StandardOutPath"), "/dev/null");
}

}  // namespace
}  // namespace pallimo::app
