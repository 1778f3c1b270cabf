// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>

namespace pallimo::adapters::libplist {

/// A document nested this many containers deep is refused: libplist builds and frees its tree by
/// recursion.
inline constexpr std::size_t kMaxNesting = 1'000;

/// An XML document of more elements is refused: one of 16 MiB could hold two million empty ones, at
/// a hundred bytes of tree each. Real ones have a few thousand.
inline constexpr std::size_t kMaxElements = 1'000'000;

/// An XML document is refused when libplist might move more bytes than these to make letters of
/// its entities (xml_entities.h); moving so many takes some hundredths of a second. A document of
/// `powermetrics` has no entity: its keys and its texts are names of the system's own. A text of a
/// megabyte may still have two hundred and fifty of them, one of a kilobyte as many as it likes.
inline constexpr std::uint64_t kMostMovedBytes = std::uint64_t{256} * 1024 * 1024;

}  // namespace pallimo::adapters::libplist
