// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/system_random.h"

#include <sys/random.h>
#include <unistd.h>

#include "base/fatal.h"

namespace pallimo::adapters::common {

std::uint64_t SystemRandom::next() {
  base::MutexLock lock(mutex_);
  if (left_ == 0) {
    // So few bytes come all at once or not at all.
    if (getentropy(kept_.data(), sizeof kept_) != 0) {
      base::fatal("The system gives no random numbers");
    }
    left_ = kept_.size();
  }
  return kept_[--left_];
}

}  // namespace pallimo::adapters::common
