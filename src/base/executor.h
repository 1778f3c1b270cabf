// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>

namespace pallimo::base {

/// Runs tasks one after the other, in the order in which they were posted, each to its end before
/// the next begins. The helper link delivers results, replies and handlers through one of these.
class Executor {
 public:
  virtual ~Executor() = default;

  /// Queues the task and returns at once. Any thread.
  virtual void post(std::function<void()> task) = 0;
};

}  // namespace pallimo::base
