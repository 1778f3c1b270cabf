// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

namespace pallimo::soak {

/// Bytes that the program holds at this moment through `new`, as they were asked for. Any thread.
///
/// What an allocator makes of them is left out, and so is what C libraries take by themselves: the
/// figure is the same at every run, on every machine, with every compiler's library, and two of
/// them may be compared to the byte.
std::int64_t liveBytes();

}  // namespace pallimo::soak
