// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "logging/log_file_data.h"

namespace pallimo::logging {
namespace {

using Texts = std::vector<std::string>;

Texts splitAt(std::string_view separator, std::string_view text) {
  Texts parts;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator)) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

/// The cells of a line "| one | two |"; none when the line is no row of a table.
Texts cellsOf(const std::string& line) {
  constexpr std::size_t kEdge = 2;  // "| " and " |"
  if (line.size() < 2 * kEdge || line[0] != '|') return {};
  return splitAt(" | ", std::string_view(line).substr(kEdge, line.size() - 2 * kEdge));
}

/// The rows of the table in the page's section "Columns", without its head.
std::vector<Texts> documentedRows() {
  std::ifstream page(PALLIMO_SOURCE_DIR "/docs/metrics.md");
  std::vector<Texts> rows;
  std::string line;
  while (std::getline(page, line) && line != "## Columns") {
  }
  while (std::getline(page, line) && line.rfind("## ", 0) != 0) {
    if (Texts cells = cellsOf(line); !cells.empty()) rows.push_back(std::move(cells));
  }
  constexpr std::ptrdiff_t kHead = 2;  // the titles and the line below them
  if (rows.size() >= kHead) rows.erase(rows.begin(), rows.begin() + kHead);
  return rows;
}

Texts documentedCells(std::size_t column) {
  Texts cells;
  for (const Texts& row : documentedRows()) cells.push_back(row.at(column));
  return cells;
}

/// A record whose fields hold their own names.
LogFileData namesOfFields() {
  return {"`timeStamp`",         "`ellapsedTime`",  "`pkgPower`",       "`cpuPower`",
          "`dramPower`",         "`anePower`",      "`gpuPower`",       "`cpuECoreFrequency`",
          "`cpuPCoreFrequency`", "`gpuFrequency`",  "`cpuAvgTmp`",      "`cpuMaxTmp`",
          "`cpuMinTmp`",         "`gpuAvgTmp`",     "`cpuUtilization`", "`cpuEUtilization`",
          "`cpuPUtilization`",   "`gpuUtilization`"};
}

TEST(MetricsPage, ListsTheLogsColumnsInTheirOrder) {
  EXPECT_EQ(documentedCells(0), splitAt(", ", kCsvHeader));
}

TEST(MetricsPage, NamesTheFieldThatEachColumnHolds) {
  EXPECT_EQ(documentedCells(1), splitAt(", ", csvLine(namesOfFields())));
}

TEST(MetricsPage, LeavesNothingOutOfARow) {
  for (const Texts& row : documentedRows()) {
    EXPECT_EQ(row.size(), 8u) << row[0];
    for (const std::string& cell : row) EXPECT_NE(cell, "") << row[0];
  }
}

}  // namespace
}  // namespace pallimo::logging
