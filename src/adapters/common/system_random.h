// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/random_numbers.h"

namespace pallimo::adapters::common {

/// The kernel's own random numbers. Any thread, without locking or state of its own.
class SystemRandom final : public ports::RandomNumbers {
 public:
  /// Stops the program when the kernel gives none: an identifier that is not random would be taken
  /// for another one. Waits only on a machine that has just been switched on.
  std::uint64_t next() override;
};

}  // namespace pallimo::adapters::common
