// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/user_words.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace pallimo::app {

namespace {

using Words = std::vector<std::string>;

void add(Words& words, Words more) {
  for (std::string& word : more) {
    if (!word.empty()) words.push_back(std::move(word));
  }
}

Words splitAt(char separator, const std::string& text) {
  Words parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;
       begin = end + 1) {
    parts.push_back(text.substr(begin, end - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

Words wordsOfEnvironment() {
  Words words;
  for (const char* name : {"USER", "LOGNAME", "SUDO_USER"}) {
    add(words, {textOf(std::getenv(name))});
  }
  add(words, wordsOfHome(textOf(std::getenv("HOME"))));
  for (const char* name : {"HOSTNAME", "HOST"}) {
    add(words, wordsOfHostName(textOf(std::getenv(name))));
  }
  return words;
}

Words wordsOfUserEntry() {
  const passwd* entry = getpwuid(getuid());
  if (entry == nullptr) return {};
  Words words;
  add(words, {textOf(entry->pw_name)});
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
  add(words, wordsOfUserEntry());
  add(words, wordsOfHostName(hostName()));
  return words;
}

std::vector<std::string> wordsOfFullName(const std::string& name) {
  Words words;
  for (const std::string& field : splitAt(',', name)) {
    add(words, {field});
    add(words, splitAt(' ', field));
  }
  return words;
}

std::vector<std::string> wordsOfHostName(const std::string& name) {
  if (name.empty() || name == "localhost") return {};
  Words words = {name};
  if (const std::size_t dot = name.find('.'); dot != std::string::npos && dot > 0) {
    words.push_back(name.substr(0, dot));
  }
  return words;
}

std::vector<std::string> wordsOfHome(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return {};
  const std::string plain = path.substr(0, end + 1);
  return {plain, plain.substr(plain.rfind('/') + 1)};
}

}  // namespace pallimo::app
