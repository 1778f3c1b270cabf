// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

#include "adapters/linux/installation/state_folder.h"
#include "ports/helper_installer.h"
#include "ports/system_log.h"

namespace pallimo::adapters::linux {

/// Puts the helper that the build made into the state folder, where the app's launcher finds it.
/// Main thread.
class HelperInstallation final : public ports::HelperInstaller {
 public:
  /// `builtHelper` is the absolute path of the helper that was built.
  HelperInstallation(std::string builtHelper, StateFolder folder, ports::SystemLog& log);

  /// Makes exactly this helper the installed one and the next to be started. The installed file is
  /// left alone when it is the same, and otherwise replaced whole: whoever starts the helper
  /// meanwhile meets the old one or the new one. Never writes through a symbolic link; the helper's
  /// folder is closed to other users. A helper that listens is ended, whatever its file, also one
  /// that hangs or is about to remove itself; its clients are interrupted. Of two installations at
  /// once into one folder one is refused. Returns what went wrong, in one line fit for a user, or
  /// nothing.
  std::optional<std::string> install() const;

  /// install(); what went wrong stands in the system log.
  bool bless(std::string_view label, const ports::AuthorizationToken& token) override;

 private:
  const std::string builtHelper_;
  const StateFolder folder_;
  ports::SystemLog& log_;
};

}  // namespace pallimo::adapters::linux
