// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/plain_cursor.h"

#include "adapters/libplist/xml_markup.h"

namespace pallimo::adapters::libplist {

namespace {

/// As many digits fit 64 bits, whatever they are.
constexpr std::size_t kSafeDigits = 18;

}  // namespace

void PlainCursor::skipSpace() {
  for (;;) {
    while (at_ < bytes_.size() && isSpace(bytes_[at_])) ++at_;
    if (!bytes_.substr(at_).starts_with(kCommentOpen)) return;
    const std::size_t end = bytes_.find(kCommentClose, at_ + kCommentOpen.size());
    if (end == std::string_view::npos) return;
    at_ = end + kCommentClose.size();
  }
}

bool PlainCursor::take(std::string_view word) {
  if (!bytes_.substr(at_).starts_with(word)) return false;
  at_ += word.size();
  return true;
}

std::optional<std::string_view> PlainCursor::takeKey() {
  if (!take("<key>")) return std::nullopt;
  const std::size_t begin = at_;
  if (!takeText()) return std::nullopt;
  const std::string_view key = bytes_.substr(begin, at_ - begin);
  if (!take("</key>")) return std::nullopt;
  ++elements_;
  return key;
}

bool PlainCursor::takeValue() {
  depth_ = 0;
  do {
    skipSpace();
    if (!takeInnerValue()) return false;
  } while (depth_ > 0);
  return true;
}

/// A value with its key, the beginning of a container, or the end of one.
bool PlainCursor::takeInnerValue() {
  if (depth_ == 0) return takeLeafOrOpen();
  if (!isDictionary_[depth_ - 1]) return take("</array>") ? close() : takeLeafOrOpen();
  if (take("</dict>")) return close();
  if (!takeKey()) return false;
  skipSpace();
  return takeLeafOrOpen();
}

bool PlainCursor::takeLeafOrOpen() {
  ++elements_;
  // By the letter, since comparing words that differ costs as much as comparing those that do not.
  switch (at_ + 1 < bytes_.size() ? bytes_[at_ + 1] : '\0') {
    case 'i':
      return take("<integer>") && takeInteger() && take("</integer>");
    case 'r':
      return take("<real>") && takeReal() && take("</real>");
    case 'd':
      if (take("<dict>")) return open(true);
      return take("<date>") && takeDate() && take("</date>");
    case 'a':
      return take("<array>") && open(false);
    case 's':
      return take("<string>") && takeText() && take("</string>");
    case 't':
      return take("<true/>");
    case 'f':
      return take("<false/>");
    default:
      return false;
  }
}

bool PlainCursor::open(bool isDictionary) {
  if (depth_ == kMaxNesting) return false;
  isDictionary_[depth_++] = isDictionary;
  return true;
}

bool PlainCursor::close() {
  --depth_;
  return true;
}

bool PlainCursor::takeOneOf(std::string_view letters) {
  if (at_ == bytes_.size() || letters.find(bytes_[at_]) == std::string_view::npos) return false;
  ++at_;
  return true;
}

/// Up to the next tag.
bool PlainCursor::takeText() {
  for (; at_ < bytes_.size(); ++at_) {
    const char c = bytes_[at_];
    if (c == '<') return true;
    if (c == '&' || c == '\0') return false;
  }
  return false;
}

std::size_t PlainCursor::takeDigits() {
  const std::size_t begin = at_;
  while (at_ < bytes_.size() && isDigit(bytes_[at_])) ++at_;
  return at_ - begin;
}

bool PlainCursor::takeInteger() {
  takeOneOf("-");
  const std::size_t digits = takeDigits();
  return digits > 0 && digits <= kSafeDigits;
}

bool PlainCursor::takeReal() {
  takeOneOf("-");
  if (takeDigits() == 0) return false;
  if (takeOneOf(".")) takeDigits();
  if (!takeOneOf("eE")) return true;
  takeOneOf("+-");
  return takeDigits() > 0;
}

/// "2026-07-09T14:26:48Z"; which days there are is of no concern to libplist.
bool PlainCursor::takeDate() {
  return takeDigits() == 4 && take("-") && takeDigits() == 2 && take("-") && takeDigits() == 2 &&
         take("T") && takeDigits() == 2 && take(":") && takeDigits() == 2 && take(":") &&
         takeDigits() == 2 && take("Z");
}

}  // namespace pallimo::adapters::libplist
