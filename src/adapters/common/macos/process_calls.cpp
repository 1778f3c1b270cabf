// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/process_calls.h"

#include <fcntl.h>
#include <sys/event.h>

#include <cerrno>

namespace pallimo::adapters::common {

int makePipe(Descriptor& reader, Descriptor& writer) {
  int ends[2];
  if (pipe(ends) != 0) return errno;
  reader = Descriptor(ends[0]);
  writer = Descriptor(ends[1]);
  for (const int end : ends) {
    if (fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return errno;
  }
  return 0;
}

int closeOtherDescriptors(posix_spawn_file_actions_t&, short& flags) {
  flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
  return 0;
}

int openExitDescriptor(pid_t child, Descriptor& exit) {
  exit = Descriptor(kqueue());
  if (!exit) return errno;
  struct kevent ended = {};
  ended.ident = static_cast<uintptr_t>(child);
  ended.filter = EVFILT_PROC;
  ended.flags = EV_ADD;
  ended.fflags = NOTE_EXIT;
  if (kevent(exit.get(), &ended, 1, nullptr, 0, nullptr) == 0) return 0;
  if (errno != ESRCH) return errno;
  // The child has ended already. The end of a pipe that nobody writes into is readable for good.
  Descriptor writer;
  return makePipe(exit, writer);
}

}  // namespace pallimo::adapters::common
