// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::adapters::libplist {

/// Whether libplist takes little time over the entities ("&amp;", "&#65;") of an XML document that
/// consists of tags and text alone. Any thread.
///
/// libplist makes a letter of each entity by moving the rest of its text up to it, so that its work
/// grows with the square of a text that holds nothing else: a megabyte of "&amp;" takes seconds.
/// Counted here are the bytes that it moves at most: for each text, its length times its entities.
bool hasFewEntities(std::string_view document);

}  // namespace pallimo::adapters::libplist
