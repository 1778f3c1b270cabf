// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/macos/launchd_job.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <variant>

#include "adapters/common/posix_process.h"

namespace pallimo::helper {

void LaunchdJob::removeInstalled() {
  remove(places_.jobFile);
  remove(places_.tool);
  ports::ChildCommand command;
  command.path = places_.launchctl;
  command.arguments = {"bootout", places_.job};
  command.environment = {"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};
  // Not waited for: launchd answers it when this process has ended.
  const auto started = adapters::common::PosixProcess::start(command);
  if (const int* error = std::get_if<int>(&started)) {
    log_.write("can't start \"" + places_.launchctl +
               "\": " + std::generic_category().message(*error));
  }
}

void LaunchdJob::remove(const std::string& path) {
  if (unlink(path.c_str()) == 0 || errno == ENOENT) return;
  log_.write("can't remove \"" + path + "\": " + std::generic_category().message(errno));
}

}  // namespace pallimo::helper
