// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::base {

/// Appends `value` as C's "%.<decimals>f" writes it, several times as fast, if it can: with 0 to 3
/// decimals, below 2^52 (4.5e15) in magnitude. Otherwise `out` stays as it is and the answer is
/// false. Knows no locale. Pure.
///
/// Exact, not nearly: the value is a whole number of 2^-s, and its thousandfold still fits 64 bits,
/// so that what lies below the last decimal is known to the last bit and halves go to the even
/// digit as in C.
bool appendShortDecimal(std::string& out, double value, int decimals);

}  // namespace pallimo::base
