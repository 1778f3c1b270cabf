// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_data.h"
#include "unit/logging/field_names.h"
#include "unit/logging/page.h"

namespace pallimo::logging {
namespace {

using tests::Page;

constexpr const char* kTable = "## Columns";

Page page() { return Page("metrics.md"); }

TEST(MetricsPage, ListsTheLogsColumnsInTheirOrder) {
  EXPECT_EQ(page().cells(kTable, 0), Page::splitAt(", ", kCsvHeader));
}

TEST(MetricsPage, NamesTheFieldThatEachColumnHolds) {
  EXPECT_EQ(page().cells(kTable, 1), Page::splitAt(", ", csvLine(tests::namesOfFields())));
}

TEST(MetricsPage, LeavesNothingOutOfARow) {
  for (const auto& row : page().rows(kTable)) {
    EXPECT_EQ(row.size(), 8u) << row[0];
    for (const std::string& cell : row) EXPECT_NE(cell, "") << row[0];
  }
}

}  // namespace
}  // namespace pallimo::logging
