// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <thread>

#include "base/executor.h"
#include "base/mutex.h"

namespace pallimo::base {

/// An Executor that owns one thread. Destroy it from any other thread than its own.
class SerialThread final : public Executor {
 public:
  SerialThread();
  /// Runs what is queued at this moment, then joins. What those tasks post is dropped unrun; other
  /// threads must have posted their last before.
  ~SerialThread() override;
  SerialThread(const SerialThread&) = delete;
  SerialThread& operator=(const SerialThread&) = delete;

  void post(std::function<void()> task) override;

 private:
  void run();

  Mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<std::function<void()>> tasks_ PALLIMO_GUARDED_BY(mutex_);
  bool isStopping_ PALLIMO_GUARDED_BY(mutex_) = false;
  std::thread thread_;  // last: it starts when everything else stands
};

}  // namespace pallimo::base
