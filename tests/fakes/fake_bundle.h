// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "base/property_list.h"
#include "ports/bundle.h"

namespace pallimo::fakes {

/// A bundle that holds whatever helper the test embeds, at first none, and nothing else. Any
/// thread.
class FakeBundle final : public ports::Bundle {
 public:
  /// A helper of this version; without one, no helper at all.
  void embedHelper(std::optional<std::string> version) {
    std::optional<base::PropertyList> info;
    if (version) {
      info.emplace(base::PropertyListDictionary{
          {"CFBundleShortVersionString", base::PropertyList(*std::move(version))}});
    }
    embedHelperWithInfo(std::move(info));
  }

  /// A helper with this info dictionary, or none.
  void embedHelperWithInfo(std::optional<base::PropertyList> info) {
    base::MutexLock lock(mutex_);
    helperInfo_ = std::move(info);
  }

  std::optional<base::PropertyList> infoDictionary(std::string_view path) const override {
    base::MutexLock lock(mutex_);
    asked_.emplace_back(path);
    if (path != "Contents/Library/LaunchServices/com.ostrovane.powermetrics") return std::nullopt;
    return helperInfo_;
  }

  /// The paths that were asked for since the last call, in order.
  std::vector<std::string> takeAsked() {
    base::MutexLock lock(mutex_);
    return std::exchange(asked_, {});
  }

 private:
  mutable base::Mutex mutex_;
  std::optional<base::PropertyList> helperInfo_ PALLIMO_GUARDED_BY(mutex_);
  mutable std::vector<std::string> asked_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
