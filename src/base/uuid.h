// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string>

namespace pallimo::base {

/// The text of the random UUID (RFC 9562, version 4) made of 128 random bits, six of which the
/// format takes for itself: upper-case hexadecimal in groups of 8, 4, 4, 4 and 12. Pure.
std::string uuidText(std::uint64_t high, std::uint64_t low);

}  // namespace pallimo::base
