// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

namespace pallimo::ports {

/// Random numbers nobody can foresee. Any thread.
class RandomNumbers {
 public:
  virtual ~RandomNumbers() = default;

  /// Any of the 2^64 numbers, each as likely.
  virtual std::uint64_t next() = 0;
};

}  // namespace pallimo::ports
