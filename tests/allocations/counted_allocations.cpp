// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "allocations/counted_allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> calls = 0;

}  // namespace

// The forms for arrays and those that do not throw call these. Not inlined: the compiler would take
// the blocks for malloc's own.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++calls;
  void* block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

[[gnu::noinline]] void operator delete(void* pointer) noexcept { std::free(pointer); }

void operator delete(void* pointer, std::size_t) noexcept { operator delete(pointer); }

namespace pallimo::allocations {

std::size_t allocations() { return calls; }

}  // namespace pallimo::allocations
