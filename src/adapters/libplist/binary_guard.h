// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <span>

namespace pallimo::adapters::libplist {

/// Whether libplist may be shown this binary property list ("bplist..."). Any thread.
///
/// Follows every reference from the top object as libplist will, but without recursion, and says no
/// when something points outside the bytes, is of a kind that a property list does not have, is a
/// key but no text or has a NUL in it (libplist stops the program over such a key), is an integer
/// beyond 64 bits, or is nested 1,000 containers deep or deeper (a cycle is). Objects may be
/// shared, so that a kilobyte can unfold into gigabytes: the unfolded size, at 128 bytes a value
/// and its own payload, is bounded by 64 MiB; a real document of 550 KB unfolds into about 4 MiB.
bool isHarmlessBinary(std::span<const std::uint8_t> bytes);

}  // namespace pallimo::adapters::libplist
