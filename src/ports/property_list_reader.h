// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/property_list.h"

namespace pallimo::ports {

/// An entry of a dictionary that somebody looks at.
struct WantedEntry {
  std::string_view key;  ///< of static storage
  /// What is looked at in its value, when that is a dictionary or an array of dictionaries. Empty:
  /// the whole value, whatever it is.
  std::vector<WantedEntry> below = {};
};

/// Of each dictionary on the way the entries that are looked at; empty: everything.
using Wanted = std::vector<WantedEntry>;

/// What is wanted of the value under `key` in a dictionary of which `wanted` is; nullptr when the
/// entry is left out. Everything is wanted of everything where nothing is named.
inline const Wanted* wantedBelow(const Wanted& wanted, std::string_view key) {
  if (wanted.empty()) return &wanted;
  for (const WantedEntry& entry : wanted) {
    if (entry.key == key) return &entry.below;
  }
  return nullptr;
}

/// Turns the bytes of a property list, XML or binary, into its value. Any thread.
class PropertyListReader {
 public:
  virtual ~PropertyListReader() = default;

  /// The first document in `bytes`, or nothing when there is none; bytes after it are ignored
  /// (a binary document is found from its end, so with bytes after it it is none).
  /// Numbers are read in the C locale whatever the process's is. A document nested 1,000 levels
  /// deep or deeper is refused.
  std::optional<base::PropertyList> read(std::span<const std::uint8_t> bytes) const {
    return readOnly(bytes, {});
  }

  /// The same, holding of the wanted dictionaries' entries no others. For whoever reads a document
  /// every second and looks at a twentieth of it. Accepts and refuses what `read` does, in what
  /// is left out as well.
  virtual std::optional<base::PropertyList> readOnly(std::span<const std::uint8_t> bytes,
                                                     const Wanted& wanted) const = 0;
};

}  // namespace pallimo::ports
