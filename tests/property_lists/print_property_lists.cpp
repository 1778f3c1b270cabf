// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Reads documents from standard input, each behind its length in four bytes (the highest first),
// and prints one line for each: "-" when the app's reader refuses it, else its tree, in the words
// of scripts/compare_property_lists. A number that is a whole one of 64 bits is printed as such,
// however it was written.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "adapters/libplist/libplist_reader.h"

namespace {

using pallimo::base::PropertyList;

std::string hexadecimal(const auto& bytes) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const auto byte : bytes) {
    const auto value = static_cast<std::uint8_t>(byte);
    text += kDigits[value >> 4];
    text += kDigits[value & 0xF];
  }
  return text;
}

/// An integer beyond the signed ones is only to be had as a double; here every bit counts.
std::optional<std::uint64_t> hugeInteger(const PropertyList& value) {
  constexpr double kLowest = 9223372036854775808.0;  // 2^63
  constexpr std::uint64_t kSpacing = 2048;           // of doubles from there to 2^64
  const double number = value.numberOr(0);
  if (!(number >= kLowest && number <= 2 * kLowest)) return std::nullopt;
  // 2^64 itself is none of them; the one before it is the last.
  const std::uint64_t last =
      number < 2 * kLowest ? static_cast<std::uint64_t>(number) + kSpacing : UINT64_MAX;
  for (std::uint64_t step = 0; step <= 2 * kSpacing; ++step) {
    if (value == PropertyList(last - step)) return last - step;
  }
  return std::nullopt;
}

std::string printedNumber(const PropertyList& value) {
  const double number = value.numberOr(0);
  std::int64_t integer = 0;
  const bool isNegativeZero = number == 0 && std::signbit(number);
  if (!isNegativeZero && value.readInteger(integer)) return "i" + std::to_string(integer);
  if (const auto huge = hugeInteger(value)) return "i" + std::to_string(*huge);
  if (std::isnan(number)) return "rnan";
  char text[20];
  std::snprintf(text, sizeof text, "r%016llx",
                static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(number)));
  return text;
}

std::string printed(const PropertyList& value) {
  if (const auto* items = value.array()) {
    std::string text = "[";
    for (const PropertyList& item : *items) text += printed(item) + ",";
    return text + "]";
  }
  if (const auto* entries = value.dictionary()) {
    std::string text = "{";
    for (const auto& [key, item] : *entries) text += hexadecimal(key) + ":" + printed(item) + ",";
    return text + "}";
  }
  if (const auto* text = value.text()) return "'" + hexadecimal(*text) + "'";
  if (const auto* flag = value.boolean()) return *flag ? "t" : "f";
  if (const auto* data = value.data()) return "<" + hexadecimal(*data) + ">";
  if (const auto* date = value.date()) {
    return "@" + std::to_string(std::llround(date->secondsSince2001 * 1000));
  }
  return printedNumber(value);
}

}  // namespace

int main() {
  const std::string input(std::istreambuf_iterator<char>(std::cin), {});
  const std::span<const std::uint8_t> bytes(reinterpret_cast<const std::uint8_t*>(input.data()),
                                            input.size());
  for (std::size_t at = 0; at + 4 <= bytes.size();) {
    std::size_t size = 0;
    for (std::size_t end = at + 4; at < end; ++at) size = size << 8 | bytes[at];
    if (size > bytes.size() - at) return 1;
    const auto value = pallimo::adapters::libplist::LibplistReader().read(bytes.subspan(at, size));
    std::cout << (value ? printed(*value) : "-") << '\n';
    at += size;
  }
  return 0;
}
