// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/file_store.h"

namespace pallimo::fakes {

/// Files in memory; writing fails when the test says so. Any thread.
class MemoryFileStore final : public ports::FileStore {
 public:
  std::optional<std::string> writeAtomically(
      const std::string& path, const std::function<void(const Writer&)>& fill) override {
    if (onWrite_) onWrite_(path);
    std::string text;
    std::size_t longest = 0;
    fill([&](std::string_view piece) {
      text += piece;
      longest = std::max(longest, piece.size());
    });
    base::MutexLock lock(mutex_);
    writes_.push_back(path);
    if (failure_) return failure_;
    longestPiece_ = std::max(longestPiece_, longest);
    files_[path] = std::move(text);
    return std::nullopt;
  }

  std::optional<std::string> desktopFolder() const override {
    base::MutexLock lock(mutex_);
    return desktop_;
  }

  /// Runs inside every write, before it, on the writer's thread. Set before use.
  void setOnWrite(std::function<void(const std::string& path)> hook) { onWrite_ = std::move(hook); }
  void setDesktopFolder(std::optional<std::string> folder) {
    base::MutexLock lock(mutex_);
    desktop_ = std::move(folder);
  }
  /// From now on writing fails with this description; nothing: it succeeds.
  void setFailure(std::optional<std::string> description) {
    base::MutexLock lock(mutex_);
    failure_ = std::move(description);
  }

  /// By path.
  std::map<std::string, std::string> files() const {
    base::MutexLock lock(mutex_);
    return files_;
  }
  /// The paths that were written or failed, in the order in which their writing ended.
  std::vector<std::string> writes() const {
    base::MutexLock lock(mutex_);
    return writes_;
  }
  /// Forgets what was written so far.
  void forget() {
    base::MutexLock lock(mutex_);
    files_.clear();
    std::vector<std::string>().swap(writes_);
  }
  /// Bytes of the longest piece that any file came in.
  std::size_t longestPiece() const {
    base::MutexLock lock(mutex_);
    return longestPiece_;
  }

 private:
  std::function<void(const std::string&)> onWrite_;
  mutable base::Mutex mutex_;
  std::optional<std::string> desktop_ PALLIMO_GUARDED_BY(mutex_) = "/home/ada/Desktop";
  std::optional<std::string> failure_ PALLIMO_GUARDED_BY(mutex_);
  std::map<std::string, std::string> files_ PALLIMO_GUARDED_BY(mutex_);
  std::vector<std::string> writes_ PALLIMO_GUARDED_BY(mutex_);
  std::size_t longestPiece_ PALLIMO_GUARDED_BY(mutex_) = 0;
};

}  // namespace pallimo::fakes
