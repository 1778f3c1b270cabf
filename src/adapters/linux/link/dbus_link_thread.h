// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <set>

#include "adapters/common/poll_loop.h"
#include "base/mutex.h"

namespace pallimo::adapters::linux {

class DBusHelperLink;

/// The loop that all connections of one connector share, with the links that live on it. Links know
/// it weakly: whoever tells it to end need not outlive them.
class DBusLinkThread {
 public:
  common::PollLoop& loop() { return loop_; }

  // The loop's thread.
  void add(std::shared_ptr<DBusHelperLink> link);
  void remove(const std::shared_ptr<DBusHelperLink>& link);
  /// Runs the loop until its last link is gone after end().
  void run();

  // Any thread.
  /// Closes all links: each may still write what was sent to it before.
  void end();
  /// Waits until run() has returned; false when `limit` has passed before.
  bool waitForEnd(std::chrono::milliseconds limit);

 private:
  void closeAll();

  common::PollLoop loop_;
  std::set<std::shared_ptr<DBusHelperLink>> links_;  // the loop's thread
  bool isEnding_ = false;                            // the loop's thread
  base::Mutex mutex_;
  std::condition_variable_any ended_;
  bool hasEnded_ PALLIMO_GUARDED_BY(mutex_) = false;
};

}  // namespace pallimo::adapters::linux
