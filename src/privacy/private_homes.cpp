// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/private_homes.h"

#include <algorithm>
#include <array>
#include <string>

#include "privacy/ascii_letters.h"

namespace pallimo::privacy {

namespace {

using namespace letters;

using Folders = std::array<std::string_view, 2>;
constexpr std::array<Folders, 4> kHomes = {
    {{"users", ""}, {"home", ""}, {"var", "root"}, {"private", "var"}}};
constexpr std::string_view kRootsHome = "root";

/// How many bytes of slashes stand there, of either kind and escaped or not. `low` is lower case,
/// as everywhere below.
std::size_t slashesAt(std::string_view low, std::size_t at) {
  const std::size_t begin = at;
  while (at < low.size()) {
    const std::string_view escape = low.substr(at, 3);
    if (low[at] == '/' || low[at] == '\\') {
      ++at;
    } else if (escape == "%2f" || escape == "%5c") {
      at += 3;
    } else {
      break;
    }
  }
  return at - begin;
}

/// Whether the folders stand there one after the other, each with slashes behind it.
bool areFoldersAt(const Folders& folders, std::string_view low, std::size_t at) {
  for (const std::string_view folder : folders) {
    if (folder.empty()) return true;
    if (low.substr(at, folder.size()) != folder) return false;
    at += folder.size();
    const std::size_t slashes = slashesAt(low, at);
    if (slashes == 0 && (at != low.size() || folder != folders.back())) return false;
    at += slashes;
  }
  return true;
}

/// "/root" is a word of many paths, of a document's keys too: only at the beginning of one.
bool isRootsHomeAt(std::string_view low, std::size_t slash, std::size_t folder) {
  const bool begins = slash == 0 || (!isOfAWord(low[slash - 1]) && low[slash - 1] != ']');
  const std::size_t end = folder + kRootsHome.size();
  return begins && low.substr(folder, kRootsHome.size()) == kRootsHome &&
         (end == low.size() || !isOfAWord(low[end]));
}

/// "~/Library" and "~carol", but not "~5 ms".
bool isTildeHomeAt(std::string_view low, std::size_t at) {
  if (low[at] != '~' || at + 1 == low.size()) return false;
  const bool begins = at == 0 || !isOfAWord(low[at - 1]);
  return begins && (isLetter(low[at + 1]) || slashesAt(low, at + 1) > 0);
}

bool isHomeAt(std::string_view low, std::size_t at) {
  if (isTildeHomeAt(low, at)) return true;
  const std::size_t slashes = slashesAt(low, at);
  if (slashes == 0) return false;
  const std::size_t folder = at + slashes;
  return isRootsHomeAt(low, at, folder) ||
         std::any_of(kHomes.begin(), kHomes.end(),
                     [&](const Folders& home) { return areFoldersAt(home, low, folder); });
}

}  // namespace

TextSpans spansOfHomes(std::string_view text) {
  const std::string low = lowered(text);
  for (std::size_t at = 0; at < low.size(); ++at) {
    if (isHomeAt(low, at)) return {{at, low.size()}};
  }
  return {};
}

}  // namespace pallimo::privacy
