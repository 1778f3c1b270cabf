// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "benchmarks/allocated_bytes.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocated = 0;

// In front of each block, as wide as the strictest alignment asks for.
constexpr std::size_t kSizeField = alignof(std::max_align_t);

}  // namespace

// Not inlined: the compiler would take the blocks for malloc's own.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* block = std::malloc(size + kSizeField);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  allocated += size;
  return static_cast<char*>(block) + kSizeField;
}

[[gnu::noinline]] void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* block = static_cast<char*>(pointer) - kSizeField;
  allocated -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept { operator delete(pointer); }

namespace pallimo::benchmarks {

std::size_t allocatedBytes() { return allocated; }

}  // namespace pallimo::benchmarks
