// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ports/software_updater.h"

namespace pallimo::adapters::common {

/// Stands in the updater's place where there is none: never starts, and says why. Main thread.
class NoSoftwareUpdater final : public ports::SoftwareUpdater {
 public:
  explicit NoSoftwareUpdater(std::string reason) : reason_(std::move(reason)) {}

  std::optional<std::string> start() override { return reason_; }
  /// Nothing: start() has not succeeded.
  void checkForUpdates() override {}

 private:
  const std::string reason_;
};

}  // namespace pallimo::adapters::common
