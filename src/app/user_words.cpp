// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/user_words.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "app/letters.h"
#include "app/product_name.h"

namespace pallimo::app {

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

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

Words wordsOfEnvironment() {
  Words words;
  for (const char* name : {"USER", "LOGNAME", "SUDO_USER"}) {
    add(words, wordsOfName(textOf(std::getenv(name))));
  }
  add(words, wordsOfHome(textOf(std::getenv("HOME"))));
  for (const char* name : {"HOSTNAME", "HOST"}) {
    add(words, wordsOfHostName(textOf(std::getenv(name))));
  }
  return words;
}

Words wordsOfEntry(const passwd* entry) {
  if (entry == nullptr) return {};
  Words words;
  add(words, wordsOfName(textOf(entry->pw_name)));
  add(words, wordsOfFullName(textOf(entry->pw_gecos)));
  add(words, wordsOfHome(textOf(entry->pw_dir)));
  return words;
}

std::string hostName() {
  std::array<char, 256> name{};
  // One that is too long may come without its end.
  return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

}  // namespace

std::vector<std::string> wordsThatTellTheUser() {
  Words words = wordsOfEnvironment();
  add(words, wordsOfEntry(getpwuid(getuid())));
  // Under sudo the process is root's, and the environment may be, too.
  add(words, wordsOfEntry(getpwnam(textOf(std::getenv("SUDO_USER")).c_str())));
  add(words, wordsOfHostName(hostName()));
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

}  // namespace pallimo::app
