// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/four_char_code.h"

namespace pallimo::base {

namespace {

constexpr std::uint32_t kByteMask = 0xff;

}  // namespace

std::uint32_t encodeFourCharCode(std::string_view name) {
  std::uint32_t code = 0;
  for (const char character : name) code = (code << 8) | static_cast<unsigned char>(character);
  return code;
}

std::string decodeFourCharCode(std::uint32_t code) {
  std::string name;
  for (const int shift : {24, 16, 8, 0}) {
    name += static_cast<char>(static_cast<unsigned char>((code >> shift) & kByteMask));
  }
  return name;
}

}  // namespace pallimo::base
