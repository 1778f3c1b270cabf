// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_entities.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "adapters/libplist/document_limits.h"

namespace pallimo::adapters::libplist {

bool hasFewEntities(std::string_view document) {
  std::uint64_t moved = 0;
  // Hardly any document has one, and finding none is quick.
  std::size_t first = document.find('&');
  while (first != std::string_view::npos) {
    // With the tag in front of it, which is no matter.
    const std::size_t begin = document.rfind('<', first) + 1;
    const std::size_t end = std::min(document.find('<', first), document.size());
    const std::string_view text = document.substr(begin, end - begin);
    const auto entities = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '&'));
    // The product of the two need not fit.
    if (entities > (kMostMovedBytes - moved) / text.size()) return false;
    moved += entities * text.size();
    first = document.find('&', end);
  }
  return true;
}

}  // namespace pallimo::adapters::libplist
