// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string_view>

#include "adapters/simulated/recordings/recording.h"

namespace pallimo::adapters::simulated {

/// A number as the SMC of an Apple-silicon Mac hands it over under a type name:
///
///   "flt "                  IEEE single, least significant byte first
///   "ui8 ", "ui16", "ui32"  whole number, most significant byte first
///   "fpe2"                  16 bits with two binary places, most significant byte first
///   "ioft"                  64 bits with 16 binary places, least significant byte first
///
/// `value` is 0 or more and within the type's range, "flt " aside. A pure function; any thread.
SmcBytes smcValue(std::string_view type, double value);

/// Bytes of such a value; 0 for another type.
std::uint32_t smcSize(std::string_view type);

}  // namespace pallimo::adapters::simulated
