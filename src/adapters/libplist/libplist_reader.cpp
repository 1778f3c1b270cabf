// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/libplist_reader.h"

#include <plist/plist.h>

#include <limits>
#include <string>
#include <string_view>

#include "adapters/libplist/binary_guard.h"
#include "adapters/libplist/tree_conversion.h"
#include "adapters/libplist/wanted_part.h"
#include "adapters/libplist/xml_extract.h"
#include "base/text_format.h"

namespace pallimo::adapters::libplist {

namespace {

/// `parse` is one of libplist's two readers, whose result type differs between its versions.
template <typename Parse>
std::optional<base::PropertyList> parsed(Parse parse, std::string_view document,
                                         const ports::Wanted& wanted) {
  if (document.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  // libplist takes a node that is there already for the document's first: it must be null.
  plist_t root = nullptr;
  parse(document.data(), static_cast<std::uint32_t>(document.size()), &root);
  const Tree tree(root);
  return tree == nullptr ? std::nullopt : propertyListOf(tree.get(), wanted);
}

}  // namespace

std::optional<base::PropertyList> LibplistReader::readOnly(std::span<const std::uint8_t> bytes,
                                                           const ports::Wanted& wanted) const {
  const base::CLocaleScope cLocale;
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  // By name: plist_from_memory() of newer versions guesses further formats.
  if (text.starts_with("bplist")) {
    if (!isHarmlessBinary(bytes)) return std::nullopt;
    return parsed(plist_from_bin, text, wanted);
  }
  std::string part;
  std::string scratch;
  const std::optional<std::string_view> document =
      extractXML(wantedPart(text, wanted, part), scratch);
  if (!document) return std::nullopt;
  return parsed(plist_from_xml, *document, wanted);
}

}  // namespace pallimo::adapters::libplist
