// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <algorithm>
#include <cstdio>

#include "logging/log_file_data.h"
#include "unit/base/zone_scope.h"
#include "unit/logging/field_names.h"
#include "unit/logging/log_reader.h"
#include "unit/logging/page.h"

namespace pallimo::logging {
namespace {

using namespace std::chrono_literals;
using tests::Page;

constexpr const char* kTable = "## Columns";
constexpr std::size_t kFormat = 4;
constexpr std::size_t kExample = 5;

Page page() { return Page("log-format.md"); }

/// The page's example of a file: what stands in its first block.
tests::LogReader exampleFile() {
  const auto lines = page().lines();
  const auto begin = std::find(lines.begin(), lines.end(), "```");
  const auto end = std::find(std::next(begin), lines.end(), "```");
  std::string text;
  std::for_each(std::next(begin), end, [&text](const auto& line) { text += line + "\n"; });
  return tests::LogReader(text);
}

/// A row with the figures of the example's first one, where they are still unrounded.
LogRow exampleRow() {
  LogRow row;
  row.time = std::chrono::system_clock::time_point(1'709'647'353'045'900us);
  row.pkgPower = 4.2131;
  row.cpuPower = 3.1079;
  row.anePower = 0.0124;
  row.gpuPower = 1.0927;
  row.cpuECoreFrequency = 1234.56;
  row.cpuPCoreFrequency = 2748.2;
  row.gpuFrequency = 388.7;
  row.cpuMinTmp = 38.4;
  row.cpuAvgTmp = 44.3;
  row.cpuMaxTmp = 51.9;
  row.gpuAvgTmp = 41.1;
  row.cpuUtilization = 27.5;
  row.cpuEUtilization = 50;
  row.cpuPUtilization = 5;
  row.gpuUtilization = 18;
  return row;
}

std::string formatted(const std::string& quotedFormat, const std::string& number) {
  const std::string format = quotedFormat.substr(1, quotedFormat.size() - 2);
  const int decimals = format == "%.3f" ? 3 : format == "%.0f" ? 0 : -1;
  if (decimals < 0) return "unknown format " + format;
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, std::stod(number));
  return text;
}

TEST(LogFormatPage, ListsTheColumnsInTheirOrder) {
  EXPECT_EQ(page().cells(kTable, 0), Page::splitAt(", ", kCsvHeader));
}

TEST(LogFormatPage, NamesTheFieldThatEachColumnHolds) {
  EXPECT_EQ(page().cells(kTable, 2), Page::splitAt(", ", csvLine(tests::namesOfFields())));
}

TEST(LogFormatPage, LeavesNothingOutOfARow) {
  for (const auto& row : page().rows(kTable)) {
    EXPECT_EQ(row.size(), 6u) << row[0];
    for (const std::string& cell : row) EXPECT_NE(cell, "") << row[0];
  }
}

TEST(LogFormatPage, ItsExamplesHaveTheirFormats) {
  auto rows = page().rows(kTable);
  EXPECT_EQ(rows.at(0).at(kFormat), "`HH:mm:ss.SSS`");
  rows.erase(rows.begin());
  for (const auto& row : rows) {
    EXPECT_EQ(formatted(row[kFormat], row[kExample]), row[kExample]) << row[0];
  }
}

TEST(LogFormatPage, ItsExamplesAreWhatTheAppWrites) {
  const tests::ZoneScope zone("UTC0");
  const LogRow row = exampleRow();
  EXPECT_EQ(page().cells(kTable, kExample), Page::splitAt(", ", csvLine(formatRow(row, row.time))));
}

TEST(LogFormatPage, ItsFileHasTheHeaderAndTheExamples) {
  const auto file = exampleFile();
  EXPECT_EQ(file.header(), Page::splitAt(", ", kCsvHeader));
  ASSERT_EQ(file.rows(), 2u);
  for (std::size_t column = 0; column < file.header().size(); ++column) {
    EXPECT_EQ(file.cell(0, column), page().cells(kTable, kExample).at(column));
  }
}

}  // namespace
}  // namespace pallimo::logging
