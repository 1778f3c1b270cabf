// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_rows.h"

namespace pallimo::logging {

void LogRows::append(const LogRow& row, base::TimeOfDay timeOfDay) {
  if (chunks_.empty() || chunks_.back().size() == kRowsPerChunk) {
    chunks_.emplace_back().reserve(kRowsPerChunk);
  }
  chunks_.back().push_back({row, timeOfDay});
}

std::size_t LogRows::size() const {
  return chunks_.empty() ? 0 : (chunks_.size() - 1) * kRowsPerChunk + chunks_.back().size();
}

std::size_t LogRows::capacity() const {
  std::size_t capacity = 0;
  for (const Chunk& chunk : chunks_) capacity += chunk.capacity();
  return capacity;
}

}  // namespace pallimo::logging
