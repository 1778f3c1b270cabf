// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/uuid.h"

#include <cstddef>
#include <string_view>

namespace pallimo::base {

namespace {

/// Writes the lowest `digits` hexadecimal digits of `value` at `begin`.
void putHex(std::string& text, std::size_t begin, int digits, std::uint64_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (std::size_t at = begin + static_cast<std::size_t>(digits); at > begin; value >>= 4) {
    text[--at] = kDigits[value & 0xF];
  }
}

}  // namespace

std::string uuidText(std::uint64_t high, std::uint64_t low) {
  constexpr std::uint64_t kVersionMask = 0xF000, kVersion4 = 0x4000;
  constexpr std::uint64_t kVariantMask = 0xC000'0000'0000'0000, kVariant = 0x8000'0000'0000'0000;
  high = (high & ~kVersionMask) | kVersion4;
  low = (low & ~kVariantMask) | kVariant;
  // By hand: a panel has a new one for each of its series, every second.
  std::string text = "00000000-0000-0000-0000-000000000000";
  putHex(text, 0, 8, high >> 32);
  putHex(text, 9, 4, high >> 16);
  putHex(text, 14, 4, high);
  putHex(text, 19, 4, low >> 48);
  putHex(text, 24, 12, low);
  return text;
}

}  // namespace pallimo::base
