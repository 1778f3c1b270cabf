// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <utility>

#include "base/mutex.h"
#include "ports/bundle.h"

namespace pallimo::fakes {

/// A bundle with whatever helper the test embeds; at first none.
class FakeBundle final : public ports::Bundle {
 public:
  void embedHelper(std::optional<std::string> version) {
    base::MutexLock lock(mutex_);
    version_ = std::move(version);
  }

  std::optional<std::string> embeddedHelperVersion() const override {
    base::MutexLock lock(mutex_);
    return version_;
  }

 private:
  mutable base::Mutex mutex_;
  std::optional<std::string> version_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
