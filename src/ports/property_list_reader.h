// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "base/property_list.h"

namespace pallimo::ports {

/// Turns the bytes of a property list, XML or binary, into its value. Any thread.
class PropertyListReader {
 public:
  virtual ~PropertyListReader() = default;

  /// The first document in `bytes`, or nothing when there is none; bytes after it are ignored
  /// (a binary document is found from its end, so with bytes after it it is none).
  /// Numbers are read in the C locale whatever the process's is. A document nested 1,000 levels
  /// deep or deeper is refused.
  std::optional<base::PropertyList> read(std::span<const std::uint8_t> bytes) const {
    return readWithout(bytes, {});
  }

  /// The same value without the entries of these keys, in whatever dictionary they stand. For
  /// whoever reads a document every second and looks at a fifth of it.
  virtual std::optional<base::PropertyList> readWithout(
      std::span<const std::uint8_t> bytes, std::span<const std::string_view> keys) const = 0;
};

}  // namespace pallimo::ports
