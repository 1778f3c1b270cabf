// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <vector>

#include "base/civil_time.h"
#include "logging/log_row.h"

namespace pallimo::logging {

/// The rows of one log in memory, oldest first. One thread at a time; moving takes constant time.
///
/// They lie in chunks: a longer log copies no row, and it has room for less than one chunk more
/// than it holds. So a day of one row a second (86,400) takes 12.5 MB, 145 bytes a row.
class LogRows {
 public:
  /// A row, and what the clock on the wall showed when it was appended: the zone may be another one
  /// when the log is written.
  struct Entry {
    LogRow row;
    base::TimeOfDay timeOfDay{};
  };

  /// Seventeen minutes of rows. A chunk is large enough to go back to the system by itself, and
  /// takes memory only as far as it is filled.
  static constexpr std::size_t kRowsPerChunk = 1024;

  void append(const LogRow& row, base::TimeOfDay timeOfDay);

  std::size_t size() const;
  /// The rows that there is room for without another chunk. For whoever watches the memory.
  std::size_t capacity() const;
  /// `index` is less than size(). The entry stays where it is as long as the rows live, also when
  /// they are moved.
  const Entry& operator[](std::size_t index) const {
    return chunks_[index / kRowsPerChunk][index % kRowsPerChunk];
  }

 private:
  using Chunk = std::vector<Entry>;

  std::vector<Chunk> chunks_;  // all full but the last; none is empty
};

static_assert(sizeof(LogRows::Entry) <= 144, "a row in memory costs more than it should");

}  // namespace pallimo::logging
