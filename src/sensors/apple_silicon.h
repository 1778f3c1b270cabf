// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string_view>

#include "ports/system_controls.h"

namespace pallimo::sensors {

// Which processor the machine has, told from the kernel variable "hw.cputype": a 32-bit signed
// integer whose low byte is the processor family (12 is ARM, 7 is x86) and whose higher bits carry
// flags, such as 0x01000000 for the 64-bit variant. Any thread.

/// Nothing on an ARM processor; otherwise the name of what was found: "x86", "unknown", or
/// "error in CPU type" when the variable can't be read or reads -1.
std::optional<std::string_view> otherProcessorName(const ports::SystemControls& controls);

/// Whether the machine can run the app at all; everything that touches the helper or a sensor
/// depends on it.
bool isAppleSilicon(const ports::SystemControls& controls);

}  // namespace pallimo::sensors
