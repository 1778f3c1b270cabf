// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/property_list.h"

namespace pallimo::app {

/// One key of a document, wherever it stands under the same path.
struct OutlineEntry {
  std::string path;       ///< "processor/clusters[]/name"; "[]" is every element of a list
  std::string kind;       ///< "dictionary", "list", "text", "number", ... or "mixed"
  std::size_t count = 0;  ///< how often the path occurs
  /// Entries of a dictionary, elements of a list, bytes of a text or of data: the most that one of
  /// them has. 0 for other kinds.
  std::size_t size = 0;
  bool operator==(const OutlineEntry&) const = default;
};

/// The keys of a document and how large their values are, in the document's order; never a value.
/// Lists in lists and what lies deeper than eight levels are not entered. Pure.
std::vector<OutlineEntry> outlineOf(const base::PropertyList& document);

/// "3 entries", "1 element", "up to 9 bytes"; empty for a kind without a size.
std::string sizeText(const OutlineEntry& entry);

}  // namespace pallimo::app
