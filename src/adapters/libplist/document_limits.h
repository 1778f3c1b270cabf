// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>

namespace pallimo::adapters::libplist {

/// A document nested this many containers deep is refused: libplist builds and frees its tree by
/// recursion.
inline constexpr std::size_t kMaxNesting = 1'000;

/// An XML document of more elements is refused: one of 16 MiB could hold two million empty ones, at
/// a hundred bytes of tree each. Real ones have a few thousand.
inline constexpr std::size_t kMaxElements = 1'000'000;

}  // namespace pallimo::adapters::libplist
