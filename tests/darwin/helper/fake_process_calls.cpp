// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "darwin/helper/fake_process_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/event.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::darwin {

FakeProcessCalls& fakeProcessCalls() {
  static FakeProcessCalls calls;
  return calls;
}

namespace {

int failWith(int error) {
  errno = error;
  return -1;
}

/// What POSIX_SPAWN_CLOEXEC_DEFAULT amounts to, as far as this process's own descriptors go.
void closeAllOnExec() {
  std::vector<int> open;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    open.push_back(std::stoi(entry.path().filename().string()));
  }
  for (const int descriptor : open) {
    if (descriptor > STDERR_FILENO) fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  }
}

}  // namespace
}  // namespace pallimo::darwin

using pallimo::darwin::fakeProcessCalls;

int kqueue() {
  if (const int error = std::exchange(fakeProcessCalls().kqueueError, 0)) {
    return pallimo::darwin::failWith(error);
  }
  return eventfd(0, EFD_CLOEXEC);
}

int kevent(int kq, const struct kevent* changes, int changeCount, struct kevent* events,
           int eventCount, const struct timespec* timeout) {
  if (const int error = std::exchange(fakeProcessCalls().keventError, 0)) {
    // Said of a process that has ended, and of no other.
    siginfo_t ended = {};
    if (error == ESRCH)
      waitid(P_PID, static_cast<id_t>(changes[0].ident), &ended, WEXITED | WNOWAIT);
    return pallimo::darwin::failWith(error);
  }
  EXPECT_EQ(changeCount, 1);
  EXPECT_EQ(events, nullptr);
  EXPECT_EQ(eventCount, 0);
  EXPECT_EQ(timeout, nullptr);
  EXPECT_EQ(changes[0].filter, EVFILT_PROC);
  EXPECT_EQ(changes[0].flags, EV_ADD);
  EXPECT_EQ(changes[0].fflags, NOTE_EXIT);
  const int process = static_cast<int>(syscall(SYS_pidfd_open, changes[0].ident, 0));
  if (process < 0) return -1;
  const int moved = dup3(process, kq, O_CLOEXEC);
  close(process);
  return moved < 0 ? -1 : 0;
}

extern "C" int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags) noexcept {
  fakeProcessCalls().flags = flags;
  if ((flags & POSIX_SPAWN_CLOEXEC_DEFAULT) != 0) pallimo::darwin::closeAllOnExec();
  using Function = int (*)(posix_spawnattr_t*, short);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "posix_spawnattr_setflags"));
  return real(attributes, static_cast<short>(flags & ~POSIX_SPAWN_CLOEXEC_DEFAULT));
}
