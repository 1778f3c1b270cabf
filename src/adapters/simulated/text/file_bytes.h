// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <string>
#include <variant>

#include "base/bytes.h"

namespace pallimo::adapters::simulated {

/// Why a file could not be read, in the system's words ("No such file or directory").
struct FileError {
  std::string message;
};

/// The whole of a regular file of at most `limit` bytes. Folders, devices and pipes are errors, so
/// that a wrong name never blocks the reader or fills its memory. Any thread.
std::variant<base::Bytes, FileError> readFileBytes(const std::string& path, std::size_t limit);

/// Why readFileBytes() would refuse the file now, judged without reading it; empty when it would
/// not.
std::string whyUnreadable(const std::string& path, std::size_t limit);

}  // namespace pallimo::adapters::simulated
