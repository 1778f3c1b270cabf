// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/load_curve.h"

#include <algorithm>
#include <cmath>

namespace pallimo::adapters::simulated {

namespace {

/// The finaliser of SplitMix64: every input bit changes every output bit.
std::uint64_t mixed(std::uint64_t value) {
  value += 0x9E3779B97F4A7C15U;
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
  return value ^ (value >> 31);
}

/// Where in the curve a time lies: the whole steps before it and the part of a step after them.
struct Place {
  std::int64_t step;
  double part;
};

Place placeOf(double time, double scale) {
  constexpr double kFarthest = 9e15;  // whole numbers are exact up to here
  const double steps = std::clamp(time / scale, -kFarthest, kFarthest);
  const double whole = std::floor(steps);
  return {static_cast<std::int64_t>(whole), steps - whole};
}

double smooth(double part) { return part * part * (3 - 2 * part); }

}  // namespace

double LoadCurve::chance(std::uint64_t channel, std::int64_t index) const {
  const std::uint64_t bits =
      mixed(mixed(mixed(seed_) ^ channel) ^ static_cast<std::uint64_t>(index));
  return static_cast<double>(bits >> 11) * 0x1p-53;
}

double LoadCurve::noise(std::uint64_t channel, double time, double scale) const {
  const Place place = placeOf(time, scale);
  const double from = chance(channel, place.step);
  const double to = chance(channel, place.step + 1);
  return from + (to - from) * smooth(place.part);
}

double LoadCurve::burst(std::uint64_t channel, double time, double window, double share) const {
  const Place place = placeOf(time, window);
  // Four independent numbers a window: whether, when, how long, how high.
  const std::int64_t first = place.step * 4;
  if (chance(channel, first) >= share) return 0;
  constexpr double kRamp = 1;  // seconds
  const double length = window * (0.25 + 0.35 * chance(channel, first + 1));
  const double start = (window - length) * chance(channel, first + 2);
  const double height = 0.4 + 0.6 * chance(channel, first + 3);
  const double now = place.part * window;
  const double edge = std::min(now - start, start + length - now) / kRamp;
  return height * smooth(std::clamp(edge, 0.0, 1.0));
}

}  // namespace pallimo::adapters::simulated
