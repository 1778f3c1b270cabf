// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/linux/installation/state_folder.h"
#include "ports/helper_files.h"
#include "ports/system_log.h"

namespace pallimo::adapters::linux {

/// The installed helper in a state folder. There is no job to remove: the app starts the helper on
/// demand. The file of a helper that runs can be removed; the process goes on.
class InstalledHelperFiles final : public ports::HelperFiles {
 public:
  InstalledHelperFiles(StateFolder folder, ports::SystemLog& log);

  /// Removes the helper's file. It is no error when the file is gone already; what else goes wrong
  /// is one line in the log.
  void removeInstalled() override;

 private:
  const StateFolder folder_;
  ports::SystemLog& log_;
};

}  // namespace pallimo::adapters::linux
