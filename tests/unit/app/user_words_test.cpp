// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/user_words.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace pallimo::app {
namespace {

using Words = std::vector<std::string>;

/// An entry of the environment for as long as a test runs.
class Entry {
 public:
  Entry(const char* name, const char* value) : name_(name) {
    if (const char* before = getenv(name)) before_ = before;
    setenv(name, value, 1);
  }
  ~Entry() { before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_); }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

bool holds(const std::string& word) {
  const Words words = wordsThatTellTheUser();
  return std::find(words.begin(), words.end(), word) != words.end();
}

TEST(UserWords, AFullNameIsAlsoItsParts) {
  EXPECT_EQ(wordsOfFullName("Jane Doe"), (Words{"Jane Doe", "Jane", "Doe"}));
  EXPECT_EQ(wordsOfFullName("Jane,Room 1,,"), (Words{"Jane", "Jane", "Room 1", "Room", "1"}));
  EXPECT_EQ(wordsOfFullName(""), Words());
}

TEST(UserWords, AHostsNameIsAlsoItsParts) {
  EXPECT_EQ(wordsOfHostName("janes-mac.fritz.box"),
            (Words{"janes-mac.fritz.box", "janes", "fritz", "janes-mac", "fritz.box"}));
  EXPECT_EQ(wordsOfHostName("jane-doe-mbp"), (Words{"jane-doe-mbp", "jane", "doe", "mbp"}));
  EXPECT_EQ(wordsOfHostName("janes"), (Words{"janes"}));
  EXPECT_EQ(wordsOfHostName("4711"), (Words{"4711"}));
  EXPECT_EQ(wordsOfHostName(""), Words());
}

TEST(UserWords, WhatManyHostsAreCalledTellsNothing) {
  for (const char* name : {"localhost", "iMac.local", "MacBook-Pro-2", "Mac-mini", "DESKTOP.lan"}) {
    for (const std::string& word : wordsOfHostName(name)) EXPECT_EQ(word, name);
  }
  EXPECT_EQ(wordsOfHostName("iMac"), Words());
  EXPECT_EQ(wordsOfHostName("Mac-mini-14"), Words());
}

TEST(UserWords, AHomeIsAlsoItsLastFolder) {
  EXPECT_EQ(wordsOfHome("/Users/jane"), (Words{"/Users/jane", "jane"}));
  EXPECT_EQ(wordsOfHome("/data/homes/jane/"), (Words{"/data/homes/jane", "jane"}));
  EXPECT_EQ(wordsOfHome("/Users/jane.doe"), (Words{"/Users/jane.doe", "jane.doe", "jane", "doe"}));
  EXPECT_EQ(wordsOfHome("/"), Words());
  EXPECT_EQ(wordsOfHome(""), Words());
}

TEST(UserWords, UnderSudoTheyAreAlsoThoseOfWhoAskedForIt) {
  const passwd* entry = getpwnam("daemon");
  ASSERT_NE(entry, nullptr);
  const std::string home = entry->pw_dir;
  const Entry sudo("SUDO_USER", "daemon");
  EXPECT_TRUE(holds("daemon"));
  EXPECT_TRUE(holds(home)) << home;
}

TEST(UserWords, AreThoseOfTheEnvironment) {
  const Entry user("USER", "wilhelmina");
  const Entry login("LOGNAME", "willy");
  const Entry sudo("SUDO_USER", "realname");
  const Entry home("HOME", "/data/homes/mina");
  const Entry host("HOSTNAME", "mina-desk.example");
  for (const char* word : {"wilhelmina", "willy", "realname", "/data/homes/mina", "mina",
                           "mina-desk.example", "mina-desk"}) {
    EXPECT_TRUE(holds(word)) << word;
  }
}

TEST(UserWords, AreThoseOfTheSystem) {
  std::array<char, 256> name{};
  ASSERT_EQ(gethostname(name.data(), name.size() - 1), 0);
  const std::string host = name.data();
  EXPECT_TRUE(wordsOfHostName(host).empty() || holds(wordsOfHostName(host).front())) << host;
}

}  // namespace
}  // namespace pallimo::app
