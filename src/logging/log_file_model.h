// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "base/mutex.h"
#include "base/observable.h"
#include "base/subscription.h"
#include "logging/log_file_model_notification.h"
#include "logging/log_row.h"
#include "logging/log_rows.h"
#include "ports/background_queue.h"
#include "ports/clock.h"
#include "ports/console.h"
#include "ports/file_store.h"
#include "ports/main_queue.h"
#include "ports/random_numbers.h"
#include "ports/user_defaults.h"
#include "ports/user_notifications.h"

namespace pallimo::logging {

/// Collects one row a sample while logging is on, and writes all of them as one CSV file when it is
/// switched off. Any thread.
///
/// Nothing is written before that: a program that ends while logging is on writes nothing. There is
/// no limit on the number of rows (144 bytes each).
///
/// Publishes when `isLogEnabled` or `folderUseForSaving` has changed, on the thread that changed
/// it.
class LogFileModel final : public base::Observable,
                           public std::enable_shared_from_this<LogFileModel> {
 public:
  /// What it uses; all of it outlives the model and what it has queued.
  struct Services {
    ports::MainQueue& mainQueue;
    ports::BackgroundQueue& backgroundQueue;
    ports::UserDefaults& defaults;  ///< "pathFolderLocation", the folder for logs
    ports::FileStore& files;
    const ports::Clock& clock;  ///< names the file
    ports::Console& console;    ///< learns why a file could not be written
    ports::UserNotifications& notifications;
    ports::RandomNumbers& random;  ///< for the notices' identifiers
  };

  /// Reads the folder, follows the settings from now on. Logging is off: that is never stored.
  static std::shared_ptr<LogFileModel> create(const Services& services);

  bool isLogEnabled() const;
  /// Switches logging on or off; the value that it has does nothing. Publishes, then:
  ///
  /// - on: posts "Logging started";
  /// - off: writes the file on the background queue, then, from the main queue, posts "Logging
  ///   ended" with the file's path, also when it could not be written: the rows are gone then, and
  ///   the console has "error " and why. An app that is quit meanwhile writes its file, untold.
  ///
  /// The rows change hands in the same instant as `isLogEnabled` does, before the publication, so
  /// that logging may be switched on again at once: each row stands in the file of the log in which
  /// it was appended, each notice names its own file, and files are written one after the other in
  /// the order in which their logs ended.
  void setLogEnabled(bool value);

  /// The folder for logs as a path; nothing means the user's desktop.
  ///
  /// The path is that of a file URL made from the settings' text: slashes at its end go, and a text
  /// that does not begin with a slash, the empty one too, is taken from "/", the folder in which
  /// the system starts apps. A text that differs from its path in this way is announced anew at
  /// every change of the settings.
  std::optional<std::string> folderUseForSaving() const;

  /// Keeps the row if logging is on. The first one's time is what elapsed time counts from. The
  /// time of day is that of the zone in which the process is at this moment.
  void appendRow(const LogRow& row);

  /// The first row's time, seconds since 1970; nothing before it and once the log is written.
  std::optional<double> lastTimeStamp() const;
  /// The current log's file name without extension; nothing once "Logging ended" is posted.
  std::optional<std::string> filenameToUseForSaving() const;

 private:
  using Time = std::chrono::system_clock::time_point;

  /// What a stop hands to the background.
  struct EndedLog {
    std::uint64_t number = 0;
    std::string name;
    Time first;  ///< the first row's; any without rows
    LogRows rows;
  };

  explicit LogFileModel(const Services& services);

  void followFolder();
  void refreshFolder();
  bool start();
  bool stop();
  void writeEndedLogs();
  bool takeTurn();
  std::optional<EndedLog> nextEndedLog();
  void write(EndedLog log);
  void saved(std::uint64_t number, const std::string& path);

  const Services services_;
  const std::shared_ptr<LogFileModelNotification> notification_;
  base::Subscription defaultsChanges_;

  mutable base::Mutex mutex_;
  bool isLogEnabled_ PALLIMO_GUARDED_BY(mutex_) = false;
  std::optional<std::string> folderUseForSaving_ PALLIMO_GUARDED_BY(mutex_);
  std::uint64_t folderReads_ PALLIMO_GUARDED_BY(mutex_) = 0;
  std::uint64_t newestFolderRead_ PALLIMO_GUARDED_BY(mutex_) = 0;
  std::uint64_t number_ PALLIMO_GUARDED_BY(mutex_) = 0;  ///< of the log begun last; 0 is none
  std::optional<std::string> filenameToUseForSaving_ PALLIMO_GUARDED_BY(mutex_);
  std::optional<Time> lastTimeStamp_ PALLIMO_GUARDED_BY(mutex_);
  LogRows rows_ PALLIMO_GUARDED_BY(mutex_);
  std::deque<EndedLog> ended_ PALLIMO_GUARDED_BY(mutex_);  ///< not written yet, oldest first
  bool isWriting_ PALLIMO_GUARDED_BY(mutex_) = false;
};

}  // namespace pallimo::logging
