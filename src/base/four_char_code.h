// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pallimo::base {

// Four-character codes: 32-bit numbers that name SMC keys, their types and HID sensors. The first
// character is the most significant byte.

/// The number of a name's bytes, shifted in one by one: "Te05" is 0x54653035. An empty name is 0;
/// of a longer one only the last four bytes remain.
std::uint32_t encodeFourCharCode(std::string_view name);

/// The four bytes as a text of exactly four characters, whatever they are.
std::string decodeFourCharCode(std::uint32_t code);

}  // namespace pallimo::base
