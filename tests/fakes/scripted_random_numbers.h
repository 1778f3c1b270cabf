// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <deque>
#include <initializer_list>

#include "base/mutex.h"
#include "ports/random_numbers.h"

namespace pallimo::fakes {

/// Numbers that everybody can foresee: those of the script, afterwards 1, 2, 3 and so on. Any
/// thread.
class ScriptedRandomNumbers final : public ports::RandomNumbers {
 public:
  ScriptedRandomNumbers() = default;
  ScriptedRandomNumbers(std::initializer_list<std::uint64_t> script) : script_(script) {}

  std::uint64_t next() override {
    base::MutexLock lock(mutex_);
    if (script_.empty()) return ++afterwards_;
    const auto number = script_.front();
    script_.pop_front();
    return number;
  }

 private:
  base::Mutex mutex_;
  std::deque<std::uint64_t> script_ PALLIMO_GUARDED_BY(mutex_);
  std::uint64_t afterwards_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::fakes
