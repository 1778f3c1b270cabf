// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <utility>

#include "base/mutex.h"

namespace pallimo::modules {

/// The figures and histories of one module, changed together and read together.
///
/// `State` holds a `figures` of the type `Figures` and makes what readers get: `Snapshot snapshot()
/// const`. Any thread; no reader sees half of a change.
///
/// What it is handed or calls under its lock (`change`, `keep`, State::snapshot()) must not come
/// back to this object, which would wait for itself; it moves values and does nothing else, no I/O
/// and no call to others.
template <typename State, typename Figures, typename Snapshot>
class ModelState {
 public:
  /// Runs `change(state)` under the lock: moves figures in and histories on. Snapshots that readers
  /// hold stay as they are; the next one is made anew.
  template <typename Change>
  void commit(Change change) {
    std::shared_ptr<const Snapshot> outdated;  // freed after the lock is let go
    base::MutexLock lock(mutex_);
    outdated.swap(snapshot_);
    change(state_);
  }

  /// Back to a new State.
  void clear() {
    clear([](const State&, State&) {});
  }

  /// Back to a new State, into which `keep(former, emptied)`, under the lock, takes over what
  /// stays.
  template <typename Keep>
  void clear(Keep keep) {
    State emptied;  // freed after the lock is let go, with a history of hours perhaps
    commit([&](State& state) {
      keep(state, emptied);
      std::swap(state, emptied);
    });
  }

  Figures figures() const {
    base::MutexLock lock(mutex_);
    return state_.figures;
  }

  /// Made when it is asked for and shared until the next change. Never nullptr.
  std::shared_ptr<const Snapshot> snapshot() const {
    base::MutexLock lock(mutex_);
    if (!snapshot_) snapshot_ = std::make_shared<const Snapshot>(state_.snapshot());
    return snapshot_;
  }

 private:
  mutable base::Mutex mutex_;
  State state_ PALLIMO_GUARDED_BY(mutex_);
  mutable std::shared_ptr<const Snapshot> snapshot_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::modules
