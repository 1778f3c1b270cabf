// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

#include "ports/bundle.h"

namespace pallimo::adapters::linux {

/// The bundle of an app that was built and not packaged: the helper lies beside the executable and
/// both were built with the same version.
class BuiltBundle final : public ports::Bundle {
 public:
  BuiltBundle(std::string helperPath, std::string version);

  /// The version, or nothing when no helper lies there.
  std::optional<std::string> embeddedHelperVersion() const override;

 private:
  const std::string helperPath_;
  const std::string version_;
};

}  // namespace pallimo::adapters::linux
