// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "privacy/private_word.h"

#include <algorithm>

#include "privacy/ascii_letters.h"

namespace pallimo::privacy {

namespace {

using namespace letters;

/// How many bytes there are one letter beyond ASCII, or a part of one; 0: none.
std::size_t foreignSizeAt(std::string_view text, std::size_t at) {
  if (at >= text.size()) return 0;
  if (isForeign(text[at])) return 1;
  if (isEscapeAt(text, at) && !isDigit(text[at + 1])) return 3;
  if (isEscapeAt(text, at) && text[at + 1] >= '8') return 3;
  if (text.substr(at, 2) == "\\u" && at + 6 <= text.size()) {
    const std::string_view digits = text.substr(at + 2, 4);
    if (std::all_of(digits.begin(), digits.end(), isHex) && digits >= "0080") return 6;
  }
  return 0;
}

/// As above, with the letter that a mark beyond ASCII belongs to.
std::size_t markedSizeAt(std::string_view text, std::size_t at) {
  if (const std::size_t size = foreignSizeAt(text, at)) return size;
  if (at >= text.size() || !isLatin(text[at])) return 0;
  const std::size_t mark = foreignSizeAt(text, at + 1);
  return mark == 0 ? 0 : 1 + mark;
}

/// Whether a combining mark begins there: U+0300 to U+036F.
bool isMarkAt(std::string_view word, std::size_t at) {
  return at < word.size() && (word[at] == '\xCC' || word[at] == '\xCD');
}

bool endsAt(std::string_view text, std::size_t end, char last) {
  return end == text.size() || (!isLetter(text[end]) && !(isDigit(text[end]) && isDigit(last)));
}

bool standsAlone(std::string_view text, const TextSpan& span) {
  const bool isAfterAnEscape = span.begin >= 3 && isEscapeAt(text, span.begin - 3);
  const char before = span.begin == 0 ? ' ' : text[span.begin - 1];
  const bool begins =
      isAfterAnEscape || !(isLetter(before) || (isDigit(before) && isDigit(text[span.begin])));
  const char last = text[span.end - 1];
  const bool isGenitive =
      span.end < text.size() && (text[span.end] == 's' || text[span.end] == 'S');
  return begins &&
         (endsAt(text, span.end, last) || (isGenitive && endsAt(text, span.end + 1, 's')));
}

}  // namespace

PrivateWord::PrivateWord(std::string_view word)
    : parts_(1), isOnlyAlone_(word.size() <= kLongestAlone) {
  bool isBeyond = false;
  for (std::size_t at = 0; at < word.size(); ++at) {
    const bool isBeyondHere = isForeign(word[at]) || isMarkAt(word, at + 1);
    if (isBeyondHere && !isBeyond) parts_.emplace_back();
    if (!isBeyondHere) parts_.back() += lowered(word.substr(at, 1));
    isBeyond = isBeyondHere;
  }
}

TextSpans PrivateWord::spansIn(std::string_view text) const {
  TextSpans spans;
  const std::string low = lowered(text);
  for (std::size_t begin = 0; begin < low.size(); ++begin) {
    const std::size_t end = endOfMatch(low, 0, begin);
    if (end == std::string::npos || end == begin) continue;
    if (!isOnlyAlone_ || standsAlone(text, {begin, end})) spans.push_back({begin, end});
  }
  return spans;
}

/// Where the longest match of the parts from `part` on ends that begins at `at`.
std::size_t PrivateWord::endOfMatch(std::string_view low, std::size_t part, std::size_t at) const {
  if (low.substr(at, parts_[part].size()) != parts_[part]) return std::string::npos;
  at += parts_[part].size();
  if (part + 1 == parts_.size()) return at;
  std::size_t longest = std::string::npos;
  // What two letters are in one text may be one in another: every length is tried.
  while (const std::size_t size = markedSizeAt(low, at)) {
    at += size;
    const std::size_t end = endOfMatch(low, part + 1, at);
    if (end != std::string::npos) longest = end;
  }
  return longest;
}

}  // namespace pallimo::privacy
