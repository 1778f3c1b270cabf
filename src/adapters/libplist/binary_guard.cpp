// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/binary_guard.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "adapters/libplist/document_limits.h"

namespace pallimo::adapters::libplist {

namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTrailerSize = 32;
constexpr std::uint64_t kCostOfValue = 128;
constexpr std::uint64_t kBudget = 64 * 1024 * 1024;

/// One object as its marker and length describe it.
struct Object {
  std::uint64_t payload = 0;     ///< bytes from `start` on
  std::size_t start = 0;         ///< where the payload begins
  std::uint64_t references = 0;  ///< of a container: how many other objects it names
  std::uint64_t keys = 0;        ///< of a dictionary: how many of them, the first ones, are keys
};

class Walk {
 public:
  explicit Walk(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool isHarmless() {
    if (!readTrailer()) return false;
    if (!visit(top_, Role::value)) return false;
    while (!open_.empty()) {
      Container& container = open_.back();
      if (container.remaining == 0) {
        open_.pop_back();
        continue;
      }
      const std::uint64_t index = bigEndian(container.next, referenceSize_);
      container.next += referenceSize_;
      --container.remaining;
      const Role role = container.keys > 0 ? Role::key : Role::value;
      if (role == Role::key) --container.keys;
      if (!visit(index, role)) return false;
    }
    return true;
  }

 private:
  enum class Role { key, value };

  struct Container {
    std::size_t next;  ///< where its next reference stands
    std::uint64_t remaining;
    std::uint64_t keys;  ///< how many of the remaining are keys
  };

  // The caller has checked that the bytes are there.
  std::uint64_t bigEndian(std::size_t at, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8 | bytes_[at + i];
    return value;
  }

  bool readTrailer() {
    if (bytes_.size() < kHeaderSize + kTrailerSize) return false;
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offsetSize_ = bytes_[trailer + 6];
    referenceSize_ = bytes_[trailer + 7];
    count_ = bigEndian(trailer + 8, 8);
    top_ = bigEndian(trailer + 16, 8);
    const std::uint64_t table = bigEndian(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) {
      return false;
    }
    if (table < kHeaderSize || table > trailer) return false;
    table_ = static_cast<std::size_t>(table);
    return count_ <= (trailer - table_) / offsetSize_;
  }

  bool visit(std::uint64_t index, Role role) {
    if (index >= count_) return false;
    const std::uint64_t offset =
        bigEndian(table_ + static_cast<std::size_t>(index) * offsetSize_, offsetSize_);
    if (offset < kHeaderSize || offset >= table_) return false;
    const std::optional<Object> object = describe(static_cast<std::size_t>(offset));
    if (!object || object->payload > table_ - object->start) return false;
    spent_ += kCostOfValue + object->payload;
    if (spent_ > kBudget) return false;
    const std::uint8_t marker = bytes_[static_cast<std::size_t>(offset)];
    if (role == Role::key) return isKey(marker, *object);
    if (!isContainer(marker)) return true;
    open_.push_back({object->start, object->references, object->keys});
    return open_.size() < kMaxNesting;
  }

  static bool isContainer(std::uint8_t marker) { return marker >> 4 == 0xA || marker >> 4 == 0xD; }

  /// A text without NUL: libplist stops the program when it hands out a UTF-16 key that has one.
  bool isKey(std::uint8_t marker, const Object& object) const {
    const std::size_t unit = marker >> 4 == 0x5 ? 1 : 2;
    if (marker >> 4 != 0x5 && marker >> 4 != 0x6) return false;
    for (std::size_t i = 0; i < object.payload; i += unit) {
      if (bigEndian(object.start + i, unit) == 0) return false;
    }
    return true;
  }

  /// Nothing when no property list has such an object.
  std::optional<Object> describe(std::size_t offset) const {
    const std::uint8_t marker = bytes_[offset];
    const unsigned low = marker & 0x0FU;
    switch (marker >> 4) {
      case 0x0:  // false, true
        return low == 8 || low == 9 ? std::optional(Object{0, offset + 1}) : std::nullopt;
      case 0x1:  // an integer of up to sixteen bytes
        return low <= 4 && fits64Bits(offset + 1, low)
                   ? std::optional(Object{1U << low, offset + 1})
                   : std::nullopt;
      case 0x2:  // a float, a double
        return low == 2 || low == 3 ? std::optional(Object{1U << low, offset + 1}) : std::nullopt;
      case 0x3:  // a date
        return low == 3 ? std::optional(Object{8, offset + 1}) : std::nullopt;
      case 0x4:  // data
      case 0x5:  // ASCII text
        return counted(offset, 1);
      case 0x6:  // UTF-16 text
        return counted(offset, 2);
      case 0x8:  // a reference of a keyed archive
        return low < 8 ? std::optional(Object{low + 1, offset + 1}) : std::nullopt;
      case 0xA:
        return container(offset, 0);
      case 0xD:  // all its keys, then all its values
        return container(offset, 1);
      default:
        return std::nullopt;
    }
  }

  /// Of an integer of sixteen bytes libplist drops the upper eight without a word.
  bool fits64Bits(std::size_t start, unsigned low) const {
    if (low != 4) return true;
    return table_ - start >= 16 && bigEndian(start, 8) == 0;
  }

  std::optional<Object> container(std::size_t offset, std::uint64_t keysPerValue) const {
    std::optional<Object> object = counted(offset, referenceSize_ * (1 + keysPerValue));
    if (!object) return std::nullopt;
    object->references = object->payload / referenceSize_;
    object->keys = object->references * keysPerValue / 2;
    return object;
  }

  /// An object that says how many units it has: in its marker, or from fifteen on in an integer
  /// behind it.
  std::optional<Object> counted(std::size_t offset, std::size_t unit) const {
    std::uint64_t count = bytes_[offset] & 0x0FU;
    std::size_t start = offset + 1;
    if (count == 0x0F) {
      if (start >= table_) return std::nullopt;
      const std::uint8_t marker = bytes_[start];
      if (marker < 0x10 || marker > 0x13) return std::nullopt;
      const std::size_t size = std::size_t{1} << (marker & 0x0FU);
      ++start;
      if (size > table_ - start) return std::nullopt;
      count = bigEndian(start, size);
      start += size;
    }
    if (count > bytes_.size()) return std::nullopt;  // before multiplying
    return Object{count * unit, start};
  }

  const std::span<const std::uint8_t> bytes_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t top_ = 0;
  std::size_t table_ = 0;
  std::uint64_t spent_ = 0;
  std::vector<Container> open_;
};

}  // namespace

bool isHarmlessBinary(std::span<const std::uint8_t> bytes) { return Walk(bytes).isHarmless(); }

}  // namespace pallimo::adapters::libplist
