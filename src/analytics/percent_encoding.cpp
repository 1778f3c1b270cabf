// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/percent_encoding.h"

#include "base/utf8.h"

namespace pallimo::analytics {

namespace {

constexpr std::string_view kAllowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:";
constexpr std::string_view kUpperHexDigits = "0123456789ABCDEF";

}  // namespace

std::string percentEncodedValue(std::string_view text) {
  if (base::repairedUtf8(text) != text) return {};
  std::string encoded;
  for (const char character : text) {
    if (kAllowed.find(character) != std::string_view::npos) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += kUpperHexDigits[byte >> 4];
    encoded += kUpperHexDigits[byte & 0xF];
  }
  return encoded;
}

}  // namespace pallimo::analytics
