// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/connection_life.h"

#include <utility>

namespace pallimo::adapters::common {

bool ConnectionLife::beginResuming() {
  base::MutexLock lock(mutex_);
  if (isEnded_ || stage_ != Stage::suspended) return false;
  stage_ = Stage::resuming;
  return true;
}

Closing ConnectionLife::endResuming(bool isStarted) {
  base::MutexLock lock(mutex_);
  stage_ = Stage::resumed;
  if (!isStarted) {
    isEnded_ = true;
    return Closing::atOnce;
  }
  return isEnded_ ? Closing::afterWhatWasSent : Closing::nothing;
}

Closing ConnectionLife::end() {
  base::MutexLock lock(mutex_);
  if (std::exchange(isEnded_, true) || stage_ == Stage::resuming) return Closing::nothing;
  return stage_ == Stage::resumed ? Closing::afterWhatWasSent : Closing::atOnce;
}

}  // namespace pallimo::adapters::common
