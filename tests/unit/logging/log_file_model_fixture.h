// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_user_notifications.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_file_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_file_model.h"
#include "unit/base/zone_scope.h"
#include "unit/logging/log_reader.h"

namespace pallimo::tests {

/// A log model over fakes, on 5 March 2024 at 14:02:33.045 UTC, at home with the desktop
/// "/home/ada/Desktop".
struct LogFileModelFixture {
  using Texts = std::vector<std::string>;

  static constexpr const char* kFolder = "pathFolderLocation";
  static constexpr const char* kFile = "/home/ada/Desktop/PwrData 2024-03-05 at 14.02.33.csv";
  static constexpr std::chrono::system_clock::time_point kStart{
      std::chrono::milliseconds(1'709'647'353'045)};

  ZoneScope zone{"UTC0"};
  fakes::ManualMainQueue mainQueue;
  fakes::ManualBackgroundQueue backgroundQueue;
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryFileStore files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications notifications;
  fakes::ScriptedRandomNumbers random;
  std::shared_ptr<logging::LogFileModel> model;

  LogFileModelFixture() {
    clock.set(kStart);
    model = makeModel();
  }

  std::shared_ptr<logging::LogFileModel> makeModel() {
    return logging::LogFileModel::create(
        {mainQueue, backgroundQueue, defaults, files, clock, console, notifications, random});
  }

  void start() { model->setLogEnabled(true); }
  void stop() { model->setLogEnabled(false); }
  /// Lets the background write and the main thread tell.
  void settle() {
    backgroundQueue.run();
    mainQueue.run();
  }
  void finish() {
    stop();
    settle();
  }

  /// A row of this moment.
  void append(double pkgPower = 0) {
    logging::LogRow row;
    row.time = clock.now();
    row.pkgPower = pkgPower;
    model->appendRow(row);
  }

  /// Logs a row for each power.
  void log(const std::vector<double>& powers) {
    start();
    for (const double power : powers) append(power);
    finish();
  }

  /// The paths of all files.
  Texts paths() const {
    Texts paths;
    for (const auto& file : files.files()) paths.push_back(file.first);
    return paths;
  }
  LogReader read(const std::string& path) const { return LogReader(files.files().at(path)); }
  /// The package powers in the file at `path`.
  Texts powersIn(const std::string& path) const { return read(path).column(2); }
};

}  // namespace pallimo::tests
