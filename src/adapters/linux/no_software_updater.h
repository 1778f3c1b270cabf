// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/software_updater.h"

namespace pallimo::adapters::linux {

/// Stands where the updater of the macOS app stands: elsewhere the app comes from a source that has
/// its own updates. Never starts. Any thread.
class NoSoftwareUpdater final : public ports::SoftwareUpdater {
 public:
  /// "updates are only available in the macOS app".
  std::optional<std::string> start() override;
  /// Nothing: start() has not succeeded.
  void checkForUpdates() override {}
};

}  // namespace pallimo::adapters::linux
