// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "adapters/linux/installation/helper_lock.h"

namespace pallimo::adapters::linux::link_test {

/// A process that holds a helper's lock and does nothing, until it is killed.
class LockHolder {
 public:
  enum class Signals { asUsual, ignoresAll, isStopped };

  /// While it lives it removes the file at `removes` again and again, if one is named.
  explicit LockHolder(const std::string& lockPath, Signals signals = Signals::asUsual,
                      const std::string& removes = "") {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    process_ = fork();
    if (process_ == 0) hold(lockPath, signals, removes, ready[1]);
    close(ready[1]);
    char answer = 0;
    EXPECT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y') << "the lock could not be had";
    close(ready[0]);
    if (signals == Signals::isStopped) {
      EXPECT_EQ(waitpid(process_, nullptr, WUNTRACED), process_);
    }
  }
  ~LockHolder() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

  pid_t process() const { return process_; }
  /// The signal that ended it, 0 as long as it runs.
  int endedBy() {
    if (process_ > 0 && waitpid(process_, &status_, WNOHANG) == process_) process_ = 0;
    return process_ == 0 ? WTERMSIG(status_) : 0;
  }

 private:
  [[noreturn]] static void hold(const std::string& lockPath, Signals signals,
                                const std::string& removes, int ready) {
    if (signals == Signals::ignoresAll) {
      for (int each = 1; each < NSIG; ++each) signal(each, SIG_IGN);
    }
    const auto lock = HelperLock::take(lockPath);
    const char answer = lock ? 'y' : 'n';
    if (write(ready, &answer, 1) != 1) _exit(1);
    if (signals == Signals::isStopped) raise(SIGSTOP);
    while (!removes.empty()) unlink(removes.c_str());
    for (;;) pause();
  }

  pid_t process_ = 0;
  int status_ = 0;
};

}  // namespace pallimo::adapters::linux::link_test
