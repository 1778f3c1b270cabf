// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/system_random.h"

#include <sys/random.h>
#include <unistd.h>

#include "base/fatal.h"

namespace pallimo::adapters::common {

std::uint64_t SystemRandom::next() {
  std::uint64_t number = 0;
  // So few bytes come all at once or not at all.
  if (getentropy(&number, sizeof number) != 0) base::fatal("The system gives no random numbers");
  return number;
}

}  // namespace pallimo::adapters::common
