// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

namespace pallimo::ports {

/// The wall clock. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  virtual std::chrono::system_clock::time_point now() const = 0;
};

}  // namespace pallimo::ports
