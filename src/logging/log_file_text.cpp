// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_text.h"

#include <cstddef>
#include <string>

#include "logging/log_file_data.h"

namespace pallimo::logging {

void writeLogFileText(const LogRows& rows, std::chrono::system_clock::time_point first,
                      const ports::FileStore::Writer& writer) {
  constexpr std::size_t kPiece = 64 * 1024;
  constexpr std::size_t kLongestUsualLine = 512;
  std::string piece;
  piece.reserve(kPiece + kLongestUsualLine);
  piece += kCsvHeader;
  piece += '\n';
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const LogRows::Entry& entry = rows[index];
    appendCsvLine(piece, formatRow(entry.row, first, entry.timeOfDay));
    piece += '\n';
    if (piece.size() < kPiece) continue;
    writer(piece);
    piece.clear();
  }
  if (!piece.empty()) writer(piece);
}

}  // namespace pallimo::logging
