// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>

namespace pallimo::allocations {

/// How often the program has called an operator new so far, with all that it is linked with.
std::size_t allocations();

/// How often `work` does. One thread.
template <typename Work>
std::size_t allocationsOf(Work work) {
  const std::size_t before = allocations();
  work();
  return allocations() - before;
}

}  // namespace pallimo::allocations
