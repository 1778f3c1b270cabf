// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pallimo::tests {

/// `value` as `size` bytes, the highest first.
inline std::string bigEndian(std::uint64_t value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = size; i-- > 0;) {
    bytes += static_cast<char>(i < 8 ? value >> (8 * i) & 0xFFU : 0U);
  }
  return bytes;
}

/// Composes the bytes of a binary property list, sound or not: objects as they are written, the
/// first one on top, references and offsets of four bytes.
struct BinaryDocument {
  std::vector<std::string> objects;

  // What the last 32 bytes say, when it is not the truth.
  std::uint64_t top = 0;
  std::uint64_t extraCount = 0;
  std::uint64_t extraTableOffset = 0;
  std::uint8_t offsetSize = 4;
  std::uint8_t referenceSize = 4;

  std::string bytes() const {
    std::string document = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
      table += bigEndian(document.size(), 4);
      document += object;
    }
    const std::uint64_t tableOffset = document.size();
    document += table + std::string(6, '\0');
    document += static_cast<char>(offsetSize);
    document += static_cast<char>(referenceSize);
    return document + bigEndian(objects.size() + extraCount, 8) + bigEndian(top, 8) +
           bigEndian(tableOffset + extraTableOffset, 8);
  }
};

/// An object that says how many units follow, as a long one does it.
inline std::string counted(unsigned kind, std::uint64_t count, const std::string& payload) {
  std::string object(1, static_cast<char>(kind << 4 | 0xFU));
  return object + '\x12' + bigEndian(count, 4) + payload;
}

inline std::string arrayOf(const std::vector<std::uint64_t>& references) {
  std::string payload;
  for (const std::uint64_t reference : references) payload += bigEndian(reference, 4);
  return counted(0xA, references.size(), payload);
}

/// Its keys' references, then its values'.
inline std::string dictionaryOf(const std::vector<std::uint64_t>& keysThenValues) {
  std::string payload;
  for (const std::uint64_t reference : keysThenValues) payload += bigEndian(reference, 4);
  return counted(0xD, keysThenValues.size() / 2, payload);
}

inline std::string textObject(const std::string& text) { return counted(0x5, text.size(), text); }

/// An array in an array and so on, `depth` in all.
inline std::string nestedArrays(std::uint64_t depth) {
  BinaryDocument document;
  for (std::uint64_t i = 1; i < depth; ++i) document.objects.push_back(arrayOf({i}));
  document.objects.push_back(arrayOf({}));
  return document.bytes();
}

}  // namespace pallimo::tests
