// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <utility>

#include "ports/helper_files.h"
#include "ports/system_log.h"

namespace pallimo::helper {

/// What blessing leaves on a Mac: the tool, its job's property list, and the job that launchd keeps
/// loaded. The helper's one thread.
class LaunchdJob final : public ports::HelperFiles {
 public:
  /// All fixed when the helper is built; no path and no word of it comes from a client.
  struct Places {
    std::string jobFile = "/Library/LaunchDaemons/com.ostrovane.powermetrics.plist";
    std::string tool = "/Library/PrivilegedHelperTools/com.ostrovane.powermetrics";
    std::string launchctl = "/bin/launchctl";
    std::string job = "system/com.ostrovane.powermetrics";
  };

  explicit LaunchdJob(ports::SystemLog& log) : LaunchdJob(log, Places()) {}
  LaunchdJob(ports::SystemLog& log, Places places) : log_(log), places_(std::move(places)) {}

  /// Removes both files, then has launchd forget the job, which ends this process a moment later.
  /// The program that asks launchd outlives the helper. It is no error when a file is gone already;
  /// what else goes wrong is one line in the log, and the rest is done all the same.
  void removeInstalled() override;

 private:
  void remove(const std::string& path);

  ports::SystemLog& log_;
  const Places places_;
};

}  // namespace pallimo::helper
