// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "base/mutex.h"

namespace pallimo::adapters::common {

/// What a caller of ConnectionLife has to do with the system's connection now.
enum class Closing {
  nothing,          ///< somebody else has closed it or will
  atOnce,           ///< it never started: nothing was sent, and a barrier would never be reached
  afterWhatWasSent  ///< behind a barrier: to close may throw away what has not left yet
};

/// Who starts a connection and who closes it, when several threads do both: it is started at most
/// once, closed exactly once, and never closed while it is being started. Only the decisions are
/// made here; the calls into the system are the caller's, outside the lock. Any thread.
class ConnectionLife {
 public:
  /// Whether the caller starts the connection and then says so to endResuming().
  bool beginResuming();
  /// Whether it could be started. Closing falls to this caller when it could not, or when somebody
  /// asked for it meanwhile.
  Closing endResuming(bool isStarted);
  /// The connection is not wanted any more.
  Closing end();

 private:
  enum class Stage { suspended, resuming, resumed };

  base::Mutex mutex_;
  Stage stage_ PALLIMO_GUARDED_BY(mutex_) = Stage::suspended;
  bool isEnded_ PALLIMO_GUARDED_BY(mutex_) = false;
};

}  // namespace pallimo::adapters::common
