// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/process_calls.h"

#include <fcntl.h>
#include <sys/syscall.h>

#include <cerrno>

namespace pallimo::adapters::common {

int makePipe(Descriptor& reader, Descriptor& writer) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  reader = Descriptor(ends[0]);
  writer = Descriptor(ends[1]);
  return 0;
}

int closeOtherDescriptors(posix_spawn_file_actions_t& actions, short&) {
  return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

int openExitDescriptor(pid_t child, Descriptor& exit) {
  exit = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  return exit ? 0 : errno;
}

}  // namespace pallimo::adapters::common
