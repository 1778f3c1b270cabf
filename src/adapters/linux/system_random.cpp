// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/system_random.h"

#include <sys/random.h>
#include <sys/types.h>

#include <cerrno>

#include "base/fatal.h"

namespace pallimo::adapters::linux {

std::uint64_t SystemRandom::next() {
  std::uint64_t number = 0;
  ssize_t got = 0;
  do {
    got = getrandom(&number, sizeof number, 0);
  } while (got < 0 && errno == EINTR);
  // So few bytes come all at once or not at all.
  if (got != static_cast<ssize_t>(sizeof number)) base::fatal("The system gives no random numbers");
  return number;
}

}  // namespace pallimo::adapters::linux
