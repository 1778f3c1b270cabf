// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/smc_value.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>

namespace pallimo::adapters::simulated {

namespace {

struct Type {
  std::string_view name;
  std::uint32_t size;
  int binaryPlaces;
  bool isBigEndian;
};

constexpr std::array kTypes{Type{"flt ", 4, 0, false}, Type{"ui8 ", 1, 0, true},
                            Type{"ui16", 2, 0, true},  Type{"ui32", 4, 0, true},
                            Type{"fpe2", 2, 2, true},  Type{"ioft", 8, 16, false}};

const Type* typeOf(std::string_view name) {
  const auto found = std::find_if(kTypes.begin(), kTypes.end(),
                                  [name](const Type& type) { return type.name == name; });
  return found == kTypes.end() ? nullptr : &*found;
}

std::uint64_t bitsOf(const Type& type, double value) {
  if (type.name == "flt ") return std::bit_cast<std::uint32_t>(static_cast<float>(value));
  return static_cast<std::uint64_t>(std::llround(std::ldexp(value, type.binaryPlaces)));
}

}  // namespace

SmcBytes smcValue(std::string_view name, double value) {
  const Type* type = typeOf(name);
  if (type == nullptr) return std::nullopt;
  const std::uint64_t bits = bitsOf(*type, value);
  std::array<std::uint8_t, 32> bytes{};
  for (std::size_t i = 0; i < type->size; ++i) {
    const std::size_t place = type->isBigEndian ? type->size - 1 - i : i;
    bytes[place] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  return bytes;
}

std::uint32_t smcSize(std::string_view name) {
  const Type* type = typeOf(name);
  return type == nullptr ? 0 : type->size;
}

}  // namespace pallimo::adapters::simulated
