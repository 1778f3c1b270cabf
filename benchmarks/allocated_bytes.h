// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>

namespace pallimo::benchmarks {

/// What operator new has handed out and not taken back, without the allocator's own bytes. A
/// program that uses it links allocated_bytes.cpp, which replaces operator new. Any thread.
std::size_t allocatedBytes();

}  // namespace pallimo::benchmarks
