// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "soak/live_memory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

/// Before each block stands how long it is; behind that the block is aligned as any other.
constexpr std::size_t kHead = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
static_assert(kHead >= sizeof(std::size_t));

std::atomic<std::int64_t> liveNow = 0;

void* take(std::size_t size) noexcept {
  void* const whole = std::malloc(kHead + size);
  if (whole == nullptr) return nullptr;
  *static_cast<std::size_t*>(whole) = size;
  liveNow += static_cast<std::int64_t>(size);
  return static_cast<std::byte*>(whole) + kHead;
}

void* takeOrThrow(std::size_t size) {
  if (void* const block = take(size)) return block;
  throw std::bad_alloc();
}

void giveBack(void* block) noexcept {
  if (block == nullptr) return;
  void* const whole = static_cast<std::byte*>(block) - kHead;
  liveNow -= static_cast<std::int64_t>(*static_cast<std::size_t*>(whole));
  std::free(whole);
}

}  // namespace

// Every form but those for larger alignments, which nobody here uses: a sanitizer brings forms of
// its own, and a block must go back the way it came.
void* operator new(std::size_t size) { return takeOrThrow(size); }
void* operator new[](std::size_t size) { return takeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void operator delete(void* block) noexcept { giveBack(block); }
void operator delete[](void* block) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { giveBack(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { giveBack(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { giveBack(block); }

std::int64_t pallimo::soak::liveBytes() { return liveNow; }
