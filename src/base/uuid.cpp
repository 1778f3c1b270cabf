// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/uuid.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace pallimo::base {

std::string uuidText(std::uint64_t high, std::uint64_t low) {
  constexpr std::uint64_t kVersionMask = 0xF000, kVersion4 = 0x4000;
  constexpr std::uint64_t kVariantMask = 0xC000'0000'0000'0000, kVariant = 0x8000'0000'0000'0000;
  high = (high & ~kVersionMask) | kVersion4;
  low = (low & ~kVariantMask) | kVariant;
  std::array<char, 40> text{};
  const int length = std::snprintf(
      text.data(), text.size(), "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(high >> 32),
      static_cast<unsigned>(high >> 16 & 0xFFFF), static_cast<unsigned>(high & 0xFFFF),
      static_cast<unsigned>(low >> 48), static_cast<unsigned long long>(low & 0xFFFF'FFFF'FFFF));
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace pallimo::base
