// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace pallimo::adapters::linux {

namespace {

/// Somebody may have removed the folder's files between opening and locking.
bool isStillAt(const std::string& path, int descriptor) {
  struct stat locked = {};
  struct stat named = {};
  return fstat(descriptor, &locked) == 0 && lstat(path.c_str(), &named) == 0 &&
         locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

/// Sets or takes away a lock of the other kind beside ours: the kernel can say who holds that one,
/// which endListeningHelper() asks for.
bool showHolder(int descriptor, short type) {
  struct flock whole = {};
  whole.l_type = type;
  whole.l_whence = SEEK_SET;
  return fcntl(descriptor, F_SETLK, &whole) == 0;
}

}  // namespace

std::optional<HelperLock> HelperLock::take(const std::string& path) {
  constexpr mode_t kOwnerOnly = 0600;
  constexpr int kTries = 3;
  for (int round = 0; round < kTries; ++round) {
    HelperLock lock(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly));
    if (lock.descriptor_ < 0) return std::nullopt;
    // In this order nobody ever has the lock and can't be named.
    if (!showHolder(lock.descriptor_, F_WRLCK) || flock(lock.descriptor_, LOCK_EX | LOCK_NB) != 0) {
      return std::nullopt;
    }
    if (isStillAt(path, lock.descriptor_)) return lock;
  }
  return std::nullopt;
}

HelperLock::~HelperLock() {
  if (descriptor_ < 0) return;
  showHolder(descriptor_, F_UNLCK);
  // Closing alone would leave the lock with a child that has not reached its exec.
  flock(descriptor_, LOCK_UN);
  close(descriptor_);
}

HelperLock::HelperLock(HelperLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

HelperLock& HelperLock::operator=(HelperLock&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

}  // namespace pallimo::adapters::linux
