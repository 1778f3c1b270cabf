// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "ports/random_numbers.h"

namespace pallimo::ui {

/// 1, 2, 3 and so on: every number is new and can be foreseen.
class CountingRandom final : public ports::RandomNumbers {
 public:
  std::uint64_t next() override { return ++last_; }

 private:
  std::uint64_t last_ = 0;
};

}  // namespace pallimo::ui
