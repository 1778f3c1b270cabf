// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/uniform_number.h"

namespace pallimo::analytics {

namespace {

// A fair source needs a second draw once in 2^48 times; one that is stuck must not hold up the
// start.
constexpr int kMostDraws = 100;

}  // namespace

std::uint64_t uniformNumber(ports::RandomNumbers& random, std::uint64_t last) {
  const std::uint64_t count = last + 1;
  // 2^64 modulo count: without that many of the lowest numbers the rest is a multiple of count.
  const std::uint64_t surplus = (0 - count) % count;
  std::uint64_t number = random.next();
  for (int draws = 1; number < surplus && draws < kMostDraws; ++draws) number = random.next();
  return number % count;
}

}  // namespace pallimo::analytics
