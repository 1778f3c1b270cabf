// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace pallimo::benchmarks {

/// Adds to a benchmark's line what one of the `units` costs of which each iteration deals with so
/// many: "per_byte=12.3ns".
inline void countPer(benchmark::State& state, const std::string& unit, std::size_t units) {
  using benchmark::Counter;
  state.counters["per_" + unit] =
      Counter(static_cast<double>(units), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

}  // namespace pallimo::benchmarks
