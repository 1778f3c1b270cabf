// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

namespace pallimo::adapters::linux {

/// What a helper holds as long as it is the one that listens. The lock goes with the process that
/// holds it, however that ends; the file stays, since removing it would let two processes lock two
/// files of one name. A process takes it once at a time: letting a second one go would make the
/// first look free to endListeningHelper().
class HelperLock {
 public:
  /// Nothing when another process holds it or the file can't be had.
  static std::optional<HelperLock> take(const std::string& path);
  ~HelperLock();
  HelperLock(HelperLock&& other) noexcept;
  HelperLock& operator=(HelperLock&& other) noexcept;

 private:
  explicit HelperLock(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;  // -1: moved away
};

}  // namespace pallimo::adapters::linux
