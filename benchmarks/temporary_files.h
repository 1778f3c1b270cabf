// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ports/file_store.h"

namespace pallimo::benchmarks {

/// A temporary folder's files, written as the app's are: beside the target, to the disk, renamed;
/// and then gone. One thread at a time.
class TemporaryFiles final : public ports::FileStore {
 public:
  TemporaryFiles() {
    if (mkdtemp(folder_.data()) == nullptr) std::abort();
  }
  ~TemporaryFiles() override { rmdir(folder_.c_str()); }

  std::optional<std::string> writeAtomically(
      const std::string& path, const std::function<void(const Writer&)>& fill) override {
    const std::string beside = path + ".part";
    const int file = open(beside.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0666);
    if (file < 0) return "open";
    bool isWritten = true;
    fill([&](std::string_view piece) {
      isWritten = isWritten &&
                  write(file, piece.data(), piece.size()) == static_cast<ssize_t>(piece.size());
    });
    bytes = static_cast<std::size_t>(lseek(file, 0, SEEK_END));
    if (waitsForDisk) isWritten = fsync(file) == 0 && isWritten;
    close(file);
    isWritten = rename(beside.c_str(), path.c_str()) == 0 && isWritten;
    unlink(path.c_str());
    if (!isWritten) return "write";
    return std::nullopt;
  }
  std::optional<std::string> desktopFolder() const override { return folder_; }

  bool waitsForDisk = true;
  std::size_t bytes = 0;  ///< of the file written last

 private:
  std::string folder_ = "/tmp/pallimo-log-XXXXXX";
};

}  // namespace pallimo::benchmarks
