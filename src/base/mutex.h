// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <mutex>

// Clang's thread-safety analysis reads these marks; other compilers see nothing.
#if defined(__clang__)
#define PALLIMO_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define PALLIMO_THREAD_ATTRIBUTE(x)
#endif

/// The member may be touched only while the named mutex is held.
#define PALLIMO_GUARDED_BY(mutex) PALLIMO_THREAD_ATTRIBUTE(guarded_by(mutex))
/// The caller of the function holds the named mutex.
#define PALLIMO_REQUIRES(...) PALLIMO_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))

namespace pallimo::base {

/// A std::mutex that Clang's thread-safety analysis understands. Hold it for a few loads and
/// stores only: never over I/O, a callback or a publication.
class PALLIMO_THREAD_ATTRIBUTE(capability("mutex")) Mutex {
 public:
  void lock() PALLIMO_THREAD_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  void unlock() PALLIMO_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

/// Holds a Mutex for a scope. BasicLockable, so that a std::condition_variable_any can wait on it.
class PALLIMO_THREAD_ATTRIBUTE(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) PALLIMO_THREAD_ATTRIBUTE(acquire_capability(mutex))
      : mutex_(mutex) {
    mutex_.lock();
  }
  ~MutexLock() PALLIMO_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() PALLIMO_THREAD_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  void unlock() PALLIMO_THREAD_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  Mutex& mutex_;
};

}  // namespace pallimo::base
