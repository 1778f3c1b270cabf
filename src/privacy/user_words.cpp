// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/user_words.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "privacy/ascii_letters.h"
#include "privacy/product_name.h"

namespace pallimo::privacy {

namespace {

using Words = std::vector<std::string>;

void add(Words& words, Words more) {
  for (std::string& word : more) {
    if (!word.empty()) words.push_back(std::move(word));
  }
}

Words splitAt(std::string_view separators, const std::string& text) {
  Words parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find_first_of(separators, begin)) != std::string::npos;
       begin = end + 1) {
    parts.push_back(text.substr(begin, end - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

/// A name and its parts; a number alone is no part.
Words wordsOfName(const std::string& name) {
  Words words;
  add(words, {name});
  for (std::string& part : splitAt("-._", name)) {
    const bool isNumber = std::all_of(part.begin(), part.end(), letters::isDigit);
    if (!isNumber && part != name) words.push_back(std::move(part));
  }
  return words;
}

/// What many hosts and networks are called, so that it tells nothing; the report needs these words.
bool isCommonOfHosts(const std::string& word) {
  constexpr std::array<std::string_view, 19> kCommon = {
      "localhost", "localdomain", "internal", "computer", "machine", "desktop", "cluster",
      "laptop",    "server",      "power",    "home",     "core",    "host",    "box",
      "com",       "cpu",         "gpu",      "lan",      "net"};
  const std::string low = letters::lowered(word);
  return isProductName(low) || std::find(kCommon.begin(), kCommon.end(), low) != kCommon.end();
}

Words wordsOfEnvironment(const ports::UserIdentity& identity) {
  Words words;
  for (const char* name : {"USER", "LOGNAME", "SUDO_USER"}) {
    add(words, wordsOfName(identity.environment(name)));
  }
  add(words, wordsOfHome(identity.environment("HOME")));
  for (const char* name : {"HOSTNAME", "HOST"}) {
    add(words, wordsOfHostName(identity.environment(name)));
  }
  return words;
}

Words wordsOfAccount(const std::optional<ports::UserIdentity::Account>& account) {
  if (!account) return {};
  Words words;
  add(words, wordsOfName(account->name));
  add(words, wordsOfFullName(account->fullName));
  add(words, wordsOfHome(account->home));
  return words;
}

}  // namespace

std::vector<std::string> wordsThatTellTheUser(const ports::UserIdentity& identity) {
  Words words = wordsOfEnvironment(identity);
  add(words, wordsOfAccount(identity.account()));
  // Under sudo the process is root's, and the environment may be, too.
  add(words, wordsOfAccount(identity.accountOf(identity.environment("SUDO_USER"))));
  add(words, wordsOfHostName(identity.hostName()));
  return words;
}

std::vector<std::string> wordsOfFullName(const std::string& name) {
  Words words;
  for (const std::string& field : splitAt(",", name)) {
    add(words, {field});
    add(words, splitAt(" ", field));
  }
  return words;
}

std::vector<std::string> wordsOfHostName(const std::string& name) {
  Words words = wordsOfName(name);
  const std::size_t dot = name.find('.');
  if (dot != std::string::npos) add(words, {name.substr(0, dot), name.substr(dot + 1)});
  words.erase(std::remove_if(words.begin(), words.end(), isCommonOfHosts), words.end());
  return words;
}

std::vector<std::string> wordsOfHome(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return {};
  const std::string plain = path.substr(0, end + 1);
  Words words = {plain};
  add(words, wordsOfName(plain.substr(plain.rfind('/') + 1)));
  return words;
}

}  // namespace pallimo::privacy
