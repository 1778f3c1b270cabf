// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <vector>

namespace pallimo::privacy {

/// Where in a text something stands: bytes from `begin` up to `end`.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t end = 0;
};
/// They may overlap.
using TextSpans = std::vector<TextSpan>;

}  // namespace pallimo::privacy
