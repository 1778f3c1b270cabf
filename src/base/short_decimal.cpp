// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/short_decimal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace pallimo::base {

namespace {

static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == sizeof(std::uint64_t));

constexpr int kFractionBits = 52;
constexpr int kExponentBias = 1075;  // of the value as a whole number times a power of two
constexpr std::uint64_t kExponentMask = 0x7FF;
constexpr std::array<std::uint64_t, 4> kPowersOfTen = {1, 10, 100, 1000};

/// number / 2^shift, rounded to the nearest whole number, halves to the even one; number < 2^63.
std::uint64_t roundedQuotient(std::uint64_t number, int shift) {
  if (shift > 63) return 0;  // less than a half
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  const std::uint64_t quotient = number >> shift;
  const std::uint64_t rest = number & (2 * half - 1);
  const bool isUp = rest > half || (rest == half && quotient % 2 != 0);
  return quotient + (isUp ? 1 : 0);
}

/// Digits with a point before the last `decimals` of them, at least one digit before the point.
void appendWithPoint(std::string& out, std::uint64_t digits, int decimals) {
  std::array<char, 32> buffer{};
  char* const end = buffer.data() + buffer.size();
  char* begin = end;
  for (int written = 0; digits != 0 || written <= decimals; ++written) {
    if (written == decimals && decimals > 0) *--begin = '.';
    *--begin = static_cast<char>('0' + digits % 10);
    digits /= 10;
  }
  out.append(begin, end);
}

}  // namespace

bool appendShortDecimal(std::string& out, double value, int decimals) {
  if (decimals < 0 || static_cast<std::size_t>(decimals) >= kPowersOfTen.size()) return false;
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const auto exponent = static_cast<int>((bits >> kFractionBits) & kExponentMask);
  const int shift = kExponentBias - exponent;
  if (shift < 1) return false;  // 2^52 and above, infinities and what is not a number
  std::uint64_t whole = bits & ((std::uint64_t{1} << kFractionBits) - 1);
  if (exponent != 0) whole |= std::uint64_t{1} << kFractionBits;
  if (bits >> 63 != 0) out += '-';
  const std::uint64_t scaled = whole * kPowersOfTen[static_cast<std::size_t>(decimals)];
  appendWithPoint(out, roundedQuotient(scaled, shift), decimals);
  return true;
}

}  // namespace pallimo::base
