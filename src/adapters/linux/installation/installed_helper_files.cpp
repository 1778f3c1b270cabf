// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/installed_helper_files.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

namespace pallimo::adapters::linux {

InstalledHelperFiles::InstalledHelperFiles(StateFolder folder, ports::SystemLog& log)
    : folder_(std::move(folder)), log_(log) {}

void InstalledHelperFiles::removeInstalled() {
  const std::string path = folder_.installedHelper();
  if (unlink(path.c_str()) == 0 || errno == ENOENT) return;
  log_.write("can't remove \"" + path + "\": " + std::generic_category().message(errno));
}

}  // namespace pallimo::adapters::linux
