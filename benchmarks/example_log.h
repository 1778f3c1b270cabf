// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "benchmarks/example_row.h"
#include "benchmarks/temporary_files.h"
#include "fakes/fake_user_notifications.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_file_model.h"

namespace pallimo::benchmarks {

/// The app's log over real files; everything around it stands still.
struct ExampleLog {
  fakes::ManualMainQueue mainQueue;
  fakes::ManualBackgroundQueue backgroundQueue;
  fakes::MemoryUserDefaults defaults;
  TemporaryFiles files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications notifications;
  fakes::ScriptedRandomNumbers random;
  std::shared_ptr<logging::LogFileModel> model = logging::LogFileModel::create(
      {mainQueue, backgroundQueue, defaults, files, clock, console, notifications, random});

  /// Begins a log with so many rows, a second apart.
  void collect(int rows) {
    model->setLogEnabled(true);
    for (int second = 0; second < rows; ++second) model->appendRow(exampleRow(second));
  }
};

}  // namespace pallimo::benchmarks
