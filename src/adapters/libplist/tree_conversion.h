// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <plist/plist.h>

#include <memory>
#include <optional>
#include <type_traits>

#include "base/property_list.h"
#include "ports/property_list_reader.h"

namespace pallimo::adapters::libplist {

/// Frees a libplist node with all that hangs below it.
struct TreeDeleter {
  void operator()(plist_t node) const { plist_free(node); }
};

/// The owner of a libplist tree; null when a document could not be parsed.
using Tree = std::unique_ptr<std::remove_pointer_t<plist_t>, TreeDeleter>;

/// A copy of the tree as a value, of the wanted dictionaries the wanted entries alone; nothing when
/// they hold a node of a kind unknown here. Any thread, in the "C" locale only. Does not
/// recurse, but freeing the tree and the value does.
///
/// A repeated key leaves its last value. A keyed-archiver reference (binary documents only) becomes
/// what its XML form is, a dictionary of the one key "CF$UID".
std::optional<base::PropertyList> propertyListOf(plist_t node, const ports::Wanted& wanted);

}  // namespace pallimo::adapters::libplist
