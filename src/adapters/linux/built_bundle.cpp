// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/built_bundle.h"

#include <unistd.h>

#include <utility>

namespace pallimo::adapters::linux {

BuiltBundle::BuiltBundle(std::string helperPath, std::string version)
    : helperPath_(std::move(helperPath)), version_(std::move(version)) {}

std::optional<std::string> BuiltBundle::embeddedHelperVersion() const {
  if (::access(helperPath_.c_str(), F_OK) != 0) return std::nullopt;
  return version_;
}

}  // namespace pallimo::adapters::linux
