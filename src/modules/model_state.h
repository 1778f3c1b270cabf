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
template <typename State, typename Figures, typename Snapshot>
class ModelState {
 public:
  /// Runs `change` on the state. Under the lock, so it moves figures in and histories on and does
  /// nothing else.
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

  /// Back to a new State, into which `keep(former, emptied)` takes over what stays.
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
