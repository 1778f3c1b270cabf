// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/property_list.h"
#include "ports/property_list_reader.h"

namespace pallimo::adapters::libplist {

/// Reads property lists with libplist. Stateless; any thread.
///
/// The bytes may come from anywhere: what libplist must not be shown (deep nesting, on which it
/// recurses; a few shared references that unfold into gigabytes; half a document, which it takes
/// for a whole one) is refused first. Nothing is printed, whatever the bytes are.
///
/// XML is UTF-8, with or without a byte-order mark, prologue and `<plist>` element; the document
/// ends where its outermost element ends. What nobody looks at is taken out of it before libplist
/// sees it where it is plain enough to be judged here; a document of 55 KB shrinks to two. A binary
/// document is the whole buffer: its table of contents stands at the very end.
class LibplistReader final : public ports::PropertyListReader {
 public:
  std::optional<base::PropertyList> readOnly(std::span<const std::uint8_t> bytes,
                                             const ports::Wanted& wanted) const override;
};

}  // namespace pallimo::adapters::libplist
