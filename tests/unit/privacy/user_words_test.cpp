// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/user_words.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace pallimo::privacy {
namespace {

using Words = std::vector<std::string>;

/// Knows nothing but what a test tells it.
class Identity final : public ports::UserIdentity {
 public:
  std::string environment(const char* name) const override {
    const auto found = entries.find(name);
    return found == entries.end() ? std::string() : found->second;
  }
  std::optional<Account> account() const override { return accountOf(self); }
  std::optional<Account> accountOf(const std::string& name) const override {
    const auto found = accounts.find(name);
    return found == accounts.end() ? std::nullopt : std::optional(found->second);
  }
  std::string hostName() const override { return host; }

  std::map<std::string, std::string> entries;
  std::map<std::string, Account> accounts;
  std::string self;
  std::string host;
};

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

TEST(UserWords, AreThoseOfTheEnvironment) {
  Identity identity;
  identity.entries = {{"USER", "wilhelmina"},       {"LOGNAME", "willy"},
                      {"SUDO_USER", "realname"},    {"HOME", "/data/homes/mina"},
                      {"HOSTNAME", "desk.example"}, {"HOST", "den"},
                      {"SHELL", "/bin/sh"}};
  EXPECT_EQ(wordsThatTellTheUser(identity),
            (Words{"wilhelmina", "willy", "realname", "/data/homes/mina", "mina", "desk.example",
                   "desk", "example", "desk", "example", "den"}));
}

TEST(UserWords, AreThoseOfTheProcesssAccount) {
  Identity identity;
  identity.accounts = {{"jdoe", {"jdoe", "Jane Doe", "/Users/jane"}},
                       {"other", {"other", "Somebody Else", "/Users/other"}}};
  identity.self = "jdoe";
  EXPECT_EQ(wordsThatTellTheUser(identity),
            (Words{"jdoe", "Jane Doe", "Jane", "Doe", "/Users/jane", "jane"}));
}

TEST(UserWords, UnderSudoTheyAreAlsoThoseOfWhoAskedForIt) {
  Identity identity;
  identity.entries = {{"SUDO_USER", "jdoe"}};
  identity.accounts = {{"root", {"root", "", "/root"}}, {"jdoe", {"jdoe", "Jane", "/Users/jane"}}};
  identity.self = "root";
  EXPECT_EQ(wordsThatTellTheUser(identity), (Words{"jdoe", "root", "/root", "root", "jdoe", "Jane",
                                                   "Jane", "/Users/jane", "jane"}));
}

TEST(UserWords, AreThoseOfTheMachinesName) {
  Identity identity;
  identity.host = "janes-mac.local";
  EXPECT_EQ(wordsThatTellTheUser(identity), wordsOfHostName("janes-mac.local"));
}

TEST(UserWords, AreNoneWhereTheSystemKnowsNone) {
  EXPECT_EQ(wordsThatTellTheUser(Identity()), Words());
}

}  // namespace
}  // namespace pallimo::privacy
