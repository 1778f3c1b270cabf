// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/mutex.h"
#include "ports/random_numbers.h"

namespace pallimo::adapters::common {

/// The kernel's own random numbers. Any thread.
///
/// It asks for as many at once as one call gives, 256 bytes: the panels of one sample alone take
/// 26 numbers. A process that is forked would repeat those that are kept; ours become another
/// program at once.
class SystemRandom final : public ports::RandomNumbers {
 public:
  /// Stops the program when the kernel gives none: an identifier that is not random would be taken
  /// for another one. Waits only on a machine that has just been switched on.
  std::uint64_t next() override;

 private:
  base::Mutex mutex_;
  std::array<std::uint64_t, 32> kept_ PALLIMO_GUARDED_BY(mutex_) = {};
  std::size_t left_ PALLIMO_GUARDED_BY(mutex_) = 0;  ///< of them; those at the end are used up
};

}  // namespace pallimo::adapters::common
