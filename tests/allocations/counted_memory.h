// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>

// A program that uses these links counted_memory.cpp, which replaces operator new.

namespace pallimo::allocations {

/// How often the program has called an operator new so far, with all that it is linked with. Any
/// thread.
std::size_t allocations();

/// How often `work` does. One thread.
template <typename Work>
std::size_t allocationsOf(Work work) {
  const std::size_t before = allocations();
  work();
  return allocations() - before;
}

/// Bytes that the program holds at this moment through `new`, as they were asked for. Any thread.
///
/// What an allocator makes of them is left out, and so is what C libraries take by themselves: the
/// figure is the same at every run, on every machine, with every compiler's library, and two of
/// them may be compared to the byte.
std::int64_t liveBytes();

}  // namespace pallimo::allocations
