// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

namespace pallimo::adapters::simulated {

/// Repeatable chance: curves over time that depend on a seed and a channel alone, so that two
/// programs that simulate the same machine agree without talking to each other. Pure functions;
/// any thread, any finite time, also a negative one.
class LoadCurve {
 public:
  explicit LoadCurve(std::uint64_t seed) : seed_(seed) {}

  /// A number from 0 up to but not including 1, the same for the same channel and index.
  double chance(std::uint64_t channel, std::int64_t index) const;

  /// Moves smoothly from 0 to 1 and back, with about one turn in `scale` seconds.
  double noise(std::uint64_t channel, double time, double scale) const;

  /// 0 most of the time; in a share of the windows of `window` seconds it rises to a height of up
  /// to 1 within a second, stays for some seconds and falls again.
  double burst(std::uint64_t channel, double time, double window, double share) const;

 private:
  std::uint64_t seed_;
};

}  // namespace pallimo::adapters::simulated
