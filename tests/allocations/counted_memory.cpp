// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "allocations/counted_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

/// Before each block stands how long it is; behind that the block is aligned as any other.
constexpr std::size_t kHead = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
static_assert(kHead >= sizeof(std::size_t));

std::atomic<std::size_t> calls = 0;
std::atomic<std::int64_t> liveNow = 0;

}  // namespace

// The forms for arrays and those that do not throw call these. Not inlined: the compiler would take
// the blocks for malloc's own.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const whole = std::malloc(kHead + size);
  if (whole == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(whole) = size;
  ++calls;
  liveNow += static_cast<std::int64_t>(size);
  return static_cast<std::byte*>(whole) + kHead;
}

[[gnu::noinline]] void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  void* const whole = static_cast<std::byte*>(block) - kHead;
  liveNow -= static_cast<std::int64_t>(*static_cast<std::size_t*>(whole));
  std::free(whole);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace pallimo::allocations {

std::size_t allocations() { return calls; }

std::int64_t liveBytes() { return liveNow; }

}  // namespace pallimo::allocations
