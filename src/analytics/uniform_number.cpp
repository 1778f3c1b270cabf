// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "analytics/uniform_number.h"

namespace pallimo::analytics {

std::uint64_t uniformNumber(ports::RandomNumbers& random, std::uint64_t last) {
  const std::uint64_t count = last + 1;
  // 2^64 modulo count: without that many of the lowest numbers the rest is a multiple of count.
  const std::uint64_t surplus = (0 - count) % count;
  std::uint64_t number = random.next();
  while (number < surplus) number = random.next();
  return number % count;
}

}  // namespace pallimo::analytics
