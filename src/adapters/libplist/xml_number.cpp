// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_number.h"

#include <charconv>
#include <cstdint>
#include <system_error>

#include "adapters/libplist/xml_markup.h"

namespace pallimo::adapters::libplist {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::size_t digitsAt(std::string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && isDigit(text[end])) ++end;
  return end - at;
}

bool equalsInAnyCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (lower(text[index]) != word[index]) return false;
  }
  return true;
}

/// Whether the digits, without a sign, are a number that fits.
bool fits(std::string_view digits, bool isNegative) {
  constexpr std::uint64_t kLowest = std::uint64_t{1} << 63;
  int base = 10;
  if (digits.size() > 2 && digits[0] == '0' && lower(digits[1]) == 'x') {
    base = 16;
    digits.remove_prefix(2);
  }
  std::uint64_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (error != std::errc() || end != digits.data() + digits.size()) return false;
  return !isNegative || value <= kLowest;
}

}  // namespace

std::optional<IntegerText> judgeInteger(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && isSpace(text[at])) ++at;
  IntegerText judged{at, 0};
  const bool isNegative = at < text.size() && text[at] == '-';
  if (isNegative || (at < text.size() && text[at] == '+')) ++at;
  const std::size_t begin = at;
  // A zero in front of another digit would make libplist read the rest as octal.
  while (at + 1 < text.size() && text[at] == '0' && isDigit(text[at + 1])) ++at;
  if (isNegative) {
    judged.skippedAfterSign = at - begin;
  } else {
    judged.skippedBeforeSign = at;
  }
  if (!fits(trimmed(text.substr(at)), isNegative)) return std::nullopt;
  return judged;
}

bool isReal(std::string_view text) {
  text = trimmed(text);
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  for (const std::string_view word : {"nan", "inf", "infinity"}) {
    if (equalsInAnyCase(text, word)) return true;
  }
  std::size_t at = digitsAt(text, 0);
  std::size_t digits = at;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = digitsAt(text, at + 1);
    digits += fraction;
    at += 1 + fraction;
  }
  if (digits == 0) return false;
  if (at < text.size() && lower(text[at]) == 'e') {
    ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    const std::size_t exponent = digitsAt(text, at);
    if (exponent == 0) return false;
    at += exponent;
  }
  return at == text.size();
}

}  // namespace pallimo::adapters::libplist
