// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

namespace pallimo::ports {

/// The framework that replaces the app by a newer version of itself. Main thread.
class SoftwareUpdater {
 public:
  virtual ~SoftwareUpdater() = default;

  /// Makes it ready to check; nothing when it is, else the error's description. May be called
  /// again.
  virtual std::optional<std::string> start() = 0;
  /// Looks for a newer version, in windows of its own; after `start` succeeded.
  virtual void checkForUpdates() = 0;
};

}  // namespace pallimo::ports
