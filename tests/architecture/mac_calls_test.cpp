// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "architecture/source_tree.h"

namespace pallimo::architecture {
namespace {

struct Row {
  std::string call;
  std::string file;
};

std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells;
  for (std::size_t at = line.find('|'); at != std::string::npos;) {
    const std::size_t next = line.find('|', at + 1);
    if (next == std::string::npos) break;
    cells.push_back(line.substr(at + 1, next - at - 1));
    at = next;
  }
  return cells;
}

/// What stands in the cell's first pair of backticks.
std::string quoted(const std::string& cell) {
  const std::size_t open = cell.find('`');
  const std::size_t close = cell.find('`', open + 1);
  if (open == std::string::npos || close == std::string::npos) return {};
  return cell.substr(open + 1, close - open - 1);
}

/// The rows of the tables in docs/mac.md whose third cell names a file.
std::vector<Row> callsOfTheDocument() {
  std::vector<Row> rows;
  const std::string text = readText(root() / "docs/mac.md");
  for (const std::string& line : splitLines(text.substr(text.find("## Every call")))) {
    const auto cells = cellsOf(line);
    if (cells.size() != 4 || quoted(cells[2]).empty()) continue;
    rows.push_back({quoted(cells[1]), quoted(cells[2])});
  }
  return rows;
}

TEST(MacCalls, EachCallOfTheDocumentStandsInItsFile) {
  const auto rows = callsOfTheDocument();
  EXPECT_GE(rows.size(), 30u);
  for (const Row& row : rows) {
    std::string text = readText(root() / row.file);
    EXPECT_FALSE(text.empty()) << row.file;
    // The formatter breaks lines as it likes.
    std::string joined;
    for (const char character : text) {
      const bool isBlank = character == ' ' || character == '\n';
      if (!isBlank || (!joined.empty() && joined.back() != ' '))
        joined += isBlank ? ' ' : character;
    }
    EXPECT_NE(joined.find(row.call), std::string::npos) << row.file << ": " << row.call;
  }
}

}  // namespace
}  // namespace pallimo::architecture
