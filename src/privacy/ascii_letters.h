// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pallimo::privacy::letters {

// Kinds of a text's bytes, whatever the locale. Pure.

constexpr bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }
constexpr bool isUpper(char letter) { return letter >= 'A' && letter <= 'Z'; }
constexpr bool isLower(char letter) { return letter >= 'a' && letter <= 'z'; }
/// Of an alphabet beyond ASCII.
constexpr bool isForeign(char letter) { return (static_cast<unsigned char>(letter) & 0x80) != 0; }
constexpr bool isLatin(char letter) { return isUpper(letter) || isLower(letter); }
constexpr bool isLetter(char letter) { return isLatin(letter) || isForeign(letter); }
constexpr bool isOfAWord(char letter) { return isDigit(letter) || isLetter(letter); }
constexpr bool isHex(char letter) {
  return isDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
}

/// In lower case, of ASCII.
inline std::string lowered(std::string_view text) {
  std::string low(text);
  for (char& letter : low) {
    if (isUpper(letter)) letter = static_cast<char>(letter - 'A' + 'a');
  }
  return low;
}

/// Whether "%" and two hexadecimal digits stand there.
inline bool isEscapeAt(std::string_view text, std::size_t at) {
  return at + 3 <= text.size() && text[at] == '%' && isHex(text[at + 1]) && isHex(text[at + 2]);
}

}  // namespace pallimo::privacy::letters
