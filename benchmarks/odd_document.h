// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace pallimo::benchmarks {

// Documents that no powermetrics prints, of about so many bytes: `size` or a few more. Pure
// functions, any thread.

/// Between `begin` and `end`, inside the document's top-level dictionary, stands what `piece` makes
/// of 0, 1, 2 and so on.
template <typename Piece>
base::Bytes filledDocument(std::size_t size, std::string_view begin, Piece piece,
                           std::string_view end) {
  constexpr std::string_view kTail = "</dict>\n</plist>\n";
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n";
  text += begin;
  for (std::size_t i = 0; text.size() + end.size() + kTail.size() < size; ++i) text += piece(i);
  text.append(end).append(kTail);
  return {text.begin(), text.end()};
}

/// One dictionary, no two of whose keys are the same.
inline base::Bytes documentOfKeys(std::size_t size) {
  const auto entry = [](std::size_t i) {
    return "<key>k" + std::to_string(i) + "</key><integer>1</integer>\n";
  };
  return filledDocument(size, "<key>processor</key>\n<dict>\n", entry, "</dict>\n");
}

/// One cluster with a name of which every character is written as an entity.
inline base::Bytes documentOfEntities(std::size_t size) {
  constexpr std::string_view kBegin =
      "<key>processor</key>\n<dict>\n<key>clusters</key>\n<array>\n<dict>\n"
      "<key>name</key><string>";
  constexpr std::string_view kEnd = "</string>\n</dict>\n</array>\n</dict>\n";
  const auto entity = [](std::size_t i) { return i % 2 == 0 ? "&amp;" : "&lt;"; };
  return filledDocument(size, kBegin, entity, kEnd);
}

}  // namespace pallimo::benchmarks
