// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ports/child_processes.h"

namespace pallimo::helper {

/// The system's powermetrics, as this system has it.
struct PowermetricsTool {
  std::string path;         ///< absolute, fixed when the helper is built
  bool hasAnePower = true;  ///< whether it knows the sampler ane_power (macOS 13 and later)
  /// Entries of the tool's environment besides PATH, for the n-th request of a connection, counted
  /// from 1. Empty on a Mac; elsewhere what the stand-in needs.
  std::function<std::vector<std::string>(std::uint64_t request)> environment;
};

/// A sampling period outside these limits, both in milliseconds, is refused.
inline constexpr double kShortestPeriod = 1;
inline constexpr double kLongestPeriod = 3'600'000;

/// Real documents have 30 to 600 KB.
inline constexpr std::size_t kLongestDocument = std::size_t{16} << 20;

/// What a run may take beyond its period: the tool's start on a busy machine.
inline constexpr std::chrono::milliseconds kLongestDelay{30'000};

/// One run of the tool: one sample of `msSampling` milliseconds (rounded to a whole number), with
/// the GPU's sampler if `includeGPU`, as a property list. Nothing of the request but these two
/// reaches the command line. Nothing when the period is not finite or outside the limits. A pure
/// function as far as the tool's is one.
std::optional<ports::ChildCommand> powermetricsCommand(const PowermetricsTool& tool,
                                                       double msSampling, bool includeGPU,
                                                       std::uint64_t request);

}  // namespace pallimo::helper
