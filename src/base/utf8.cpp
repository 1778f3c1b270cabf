// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/utf8.h"

#include <algorithm>
#include <cstddef>

namespace pallimo::base {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// What may follow a first byte. The range of the second byte is what keeps out overlong forms,
/// surrogates and numbers above U+10FFFF; all later bytes are 80 to BF.
struct Sequence {
  std::size_t length = 0;  ///< bytes in all; 0 when the byte begins no sequence
  unsigned char secondFrom = 0x80;
  unsigned char secondTo = 0xBF;
};

Sequence sequenceOf(unsigned char first) {
  if (first <= 0x7F) return {.length = 1};
  if (first < 0xC2) return {};
  if (first <= 0xDF) return {.length = 2};
  if (first == 0xE0) return {.length = 3, .secondFrom = 0xA0};
  if (first == 0xED) return {.length = 3, .secondTo = 0x9F};
  if (first <= 0xEF) return {.length = 3};
  if (first == 0xF0) return {.length = 4, .secondFrom = 0x90};
  if (first <= 0xF3) return {.length = 4};
  if (first == 0xF4) return {.length = 4, .secondTo = 0x8F};
  return {};
}

/// How many bytes at the beginning of `bytes`, which is not empty, fit the sequence.
std::size_t fittingBytes(std::string_view bytes, const Sequence& sequence) {
  std::size_t count = 1;
  while (count < sequence.length && count < bytes.size()) {
    const auto byte = static_cast<unsigned char>(bytes[count]);
    const unsigned char from = count == 1 ? sequence.secondFrom : 0x80;
    const unsigned char to = count == 1 ? sequence.secondTo : 0xBF;
    if (byte < from || byte > to) break;
    ++count;
  }
  return count;
}

}  // namespace

std::string repairedUtf8(std::string_view bytes) {
  std::string repaired;
  repaired.reserve(bytes.size());
  while (!bytes.empty()) {
    const Sequence sequence = sequenceOf(static_cast<unsigned char>(bytes.front()));
    const std::size_t count = fittingBytes(bytes, sequence);
    repaired += count == sequence.length ? bytes.substr(0, count) : kReplacement;
    bytes.remove_prefix(count);
  }
  return repaired;
}

std::optional<std::string> textBeforeNul(const Bytes& bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), 0);
  if (end == bytes.end()) return std::nullopt;
  return repairedUtf8(std::string(bytes.begin(), end));
}

}  // namespace pallimo::base
