// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ports/system_controls.h"

namespace pallimo::sensors {

/// What the kernel's variables say about the machine. Stateless; any thread.
class SGSystemInfo {
 public:
  /// `controls` outlives the object.
  explicit SGSystemInfo(const ports::SystemControls& controls) : controls_(controls) {}

  /// The variable's text up to its first NUL, what is no UTF-8 replaced. A variable that can't be
  /// read, is empty or has no NUL stops the program: such a system is broken.
  std::string sysctlString(std::string_view name) const;
  /// "MacBookAir10,1"; stops the program as sysctlString() does.
  std::string hardwareModel() const;
  /// The chip, "Apple M2 Pro"; stops the program as sysctlString() does.
  std::string cpuBrandString() const;
  /// The variable's 4 bytes as a number with a sign, in the host's order. Nothing when it can't be
  /// read or has another size: one of 64 bits does not fit.
  std::optional<std::int32_t> sysctlInt32(std::string_view name) const;
  /// How many cores the kernel's performance level 1, then 0 has, by fixed pairing; nothing when it
  /// does not tell.
  std::optional<std::int32_t> efficiencyCores() const;
  std::optional<std::int32_t> performanceCores() const;

  /// Nothing on an ARM processor; otherwise the name of what was found: "x86", "unknown", or
  /// "error in CPU type". Told from "hw.cputype", whose low byte is the processor family (12 is
  /// ARM, 7 is x86) and whose higher bits are flags, such as 0x01000000 for 64 bits.
  std::optional<std::string_view> otherProcessorName() const;
  /// Whether the machine can run the app at all; everything that touches the helper or a sensor
  /// depends on it.
  bool isAppleSilicon() const;

 private:
  const ports::SystemControls& controls_;
};

}  // namespace pallimo::sensors
