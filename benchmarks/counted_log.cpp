// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// A row of the log: appended, and written into the file's text.

#include <memory>
#include <string_view>

#include "benchmarks/counted_work.h"
#include "benchmarks/example_row.h"
#include "fakes/fake_user_notifications.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_file_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_file_model.h"
#include "logging/log_file_text.h"
#include "logging/log_rows.h"

namespace pallimo::benchmarks {

namespace {

void countAppending() {
  constexpr int kRows = 200;  // far from a chunk's end
  fakes::ManualMainQueue mainQueue;
  fakes::ManualBackgroundQueue backgroundQueue;
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryFileStore files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications notifications;
  fakes::ScriptedRandomNumbers random;
  const auto model = logging::LogFileModel::create(
      {mainQueue, backgroundQueue, defaults, files, clock, console, notifications, random});
  model->setLogEnabled(true);
  const logging::LogRow row = exampleRow(500);
  count({"log_row_appended", kRows}, [&] { model->appendRow(row); });
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
