// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>

#include "ports/property_list_reader.h"

namespace pallimo::adapters::libplist {

/// `bytes` without the entries that are not `wanted`, made in `scratch`, when they begin with an
/// XML document that is plain from its first line to its last value (plain_cursor.h), as those of
/// `powermetrics` are; otherwise `bytes` themselves. Any thread.
///
/// Making a tree of a document costs ten times what walking over its bytes does, and nineteen
/// twentieths of the tree would be thrown away. What is left out is walked over all the same, so
/// that the part is accepted or refused exactly as the whole would be.
std::string_view wantedPart(std::string_view bytes, const ports::Wanted& wanted,
                            std::string& scratch);

}  // namespace pallimo::adapters::libplist
