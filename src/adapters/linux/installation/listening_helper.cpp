// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/listening_helper.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "adapters/common/descriptor.h"

namespace pallimo::adapters::linux {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr pid_t kNobody = 0;
constexpr pid_t kUnknown = -1;

/// The process that holds the lock, as the kernel knows it now.
pid_t holderOf(int lock) {
  struct flock asked = {};
  asked.l_type = F_WRLCK;
  asked.l_whence = SEEK_SET;
  if (fcntl(lock, F_GETLK, &asked) != 0) return kUnknown;
  if (asked.l_type == F_UNLCK) return kNobody;
  return asked.l_pid > 0 ? asked.l_pid : kUnknown;  // 0: it lives in another container
}

bool waitForEnd(int process, SteadyClock::time_point deadline) {
  for (;;) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
    pollfd ended = {process, POLLIN, 0};
    const int ready = poll(&ended, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000)));
    if (ready > 0) return true;
    if (left <= 0 || (ready < 0 && errno != EINTR)) return false;
  }
}

}  // namespace

bool endListeningHelper(const std::string& lockPath, std::chrono::milliseconds limit) {
  const common::Descriptor lock(open(lockPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!lock) return errno == ENOENT;
  const auto deadline = SteadyClock::now() + limit;
  for (;;) {
    const pid_t holder = holderOf(lock.get());
    if (holder == kNobody) return true;
    if (holder == kUnknown) return false;
    const common::Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, holder, 0)));
    if (!process && errno != ESRCH) return false;
    // The number may have passed to somebody else before we had the descriptor. If its process
    // holds the lock afterwards, it is the one: as long as it lives, its number is its own.
    if (process && holderOf(lock.get()) == holder) {
      syscall(SYS_pidfd_send_signal, process.get(), SIGKILL, nullptr, 0);
      return waitForEnd(process.get(), deadline);
    }
    if (SteadyClock::now() >= deadline) return holderOf(lock.get()) == kNobody;
  }
}

}  // namespace pallimo::adapters::linux
