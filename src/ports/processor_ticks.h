// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace pallimo::ports {

/// What one processor has counted since boot, in ticks of 10 ms: user, system, idle, nice. Unsigned
/// and wrapping around, as the kernel keeps them.
using ProcessorTickCounts = std::array<std::uint32_t, 4>;

/// The kernel's count of where the processors' time goes. Any thread.
class ProcessorTicks {
 public:
  virtual ~ProcessorTicks() = default;

  /// One entry a processor, in the kernel's order; nothing when the call fails.
  virtual std::optional<std::vector<ProcessorTickCounts>> read() = 0;
};

}  // namespace pallimo::ports
