// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>

namespace pallimo::adapters::libplist {

/// A document nested this many containers deep is refused: libplist builds and frees its tree by
/// recursion.
inline constexpr std::size_t kMaxNesting = 1'000;

}  // namespace pallimo::adapters::libplist
