// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// A row of the log: appended, and written into the file's text.

#include <string_view>

#include "benchmarks/counted_work.h"
#include "benchmarks/example_log.h"
#include "benchmarks/example_row.h"
#include "logging/log_file_text.h"
#include "logging/log_rows.h"

namespace pallimo::benchmarks {

namespace {

void countAppending() {
  constexpr int kRows = 200;  // far from a chunk's end
  const ExampleLog log;
  log.model->setLogEnabled(true);
  const logging::LogRow row = exampleRow(500);
  count({"log_row_appended", kRows}, [&] { log.model->appendRow(row); });
}

void countWriting() {
  constexpr int kRows = 2000;
  logging::LogRows rows;
  for (int i = 0; i < kRows; ++i) rows.append(exampleRow(500), {});
  count({"log_row_written", 1, kRows},
        [&] { logging::writeLogFileText(rows, rows[0].row.time, [](std::string_view) {}); });
}

}  // namespace

void countLog() {
  countAppending();
  countWriting();
}

}  // namespace pallimo::benchmarks
