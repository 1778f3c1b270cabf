// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_model.h"

#include <string_view>
#include <utility>

#include "base/civil_time.h"
#include "logging/log_file_name.h"
#include "logging/log_file_text.h"
#include "ports/settings_keys.h"

namespace pallimo::logging {

namespace {

std::string pathOfFolder(std::string_view text) {
  std::string path = text.starts_with('/') ? "" : "/";
  path += text;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string pathOfFile(std::string folder, const std::string& name) {
  if (!folder.empty() && folder.back() != '/') folder += '/';
  return folder + name + ".csv";
}

}  // namespace

std::shared_ptr<LogFileModel> LogFileModel::create(const Services& services) {
  std::shared_ptr<LogFileModel> model(new LogFileModel(services));
  model->followFolder();
  return model;
}

LogFileModel::LogFileModel(const Services& services)
    : services_(services),
      notification_(LogFileModelNotification::create(
          {services.notifications, services.random, services.console})) {}

bool LogFileModel::isLogEnabled() const {
  base::MutexLock lock(mutex_);
  return isLogEnabled_;
}

std::optional<std::string> LogFileModel::folderUseForSaving() const {
  base::MutexLock lock(mutex_);
  return folderUseForSaving_;
}

std::optional<double> LogFileModel::lastTimeStamp() const {
  base::MutexLock lock(mutex_);
  if (!lastTimeStamp_) return std::nullopt;
  return std::chrono::duration<double>(lastTimeStamp_->time_since_epoch()).count();
}

std::optional<std::string> LogFileModel::filenameToUseForSaving() const {
  base::MutexLock lock(mutex_);
  return filenameToUseForSaving_;
}

void LogFileModel::setLogEnabled(bool value) {
  if (!(value ? start() : stop())) return;
  publish();
  if (value) {
    notification_->notifyLoggingStarted();
  } else {
    // Held strongly: what was logged is written even if nobody else wants the model any more.
    services_.backgroundQueue.async([self = shared_from_this()] { self->writeEndedLogs(); });
  }
}

bool LogFileModel::start() {
  std::string name = logFileName(services_.clock.now());
  base::MutexLock lock(mutex_);
  if (isLogEnabled_) return false;
  lastTimeStamp_ = std::nullopt;
  ++number_;
  isLogEnabled_ = true;
  filenameToUseForSaving_ = std::move(name);
  return true;
}

bool LogFileModel::stop() {
  base::MutexLock lock(mutex_);
  if (!isLogEnabled_) return false;
  isLogEnabled_ = false;
  ended_.push_back({number_, filenameToUseForSaving_.value_or(""), lastTimeStamp_.value_or(Time()),
                    std::exchange(rows_, {})});
  return true;
}

void LogFileModel::appendRow(const LogRow& row) {
  // Asked again below, when it counts: here it spares the conversion while logging is off.
  if (!isLogEnabled()) return;
  const base::TimeOfDay timeOfDay = base::timeOfDay(base::localTime(row.time));
  base::MutexLock lock(mutex_);
  if (!isLogEnabled_) return;
  if (!lastTimeStamp_) lastTimeStamp_ = row.time;
  rows_.append(row, timeOfDay);
}

void LogFileModel::writeEndedLogs() {
  // Two of the background queue's tasks may run side by side; the one that writes takes the other's
  // log too, so that of two logs of the same second the later one stays.
  if (!takeTurn()) return;
  while (auto log = nextEndedLog()) write(std::move(*log));
}

bool LogFileModel::takeTurn() {
  base::MutexLock lock(mutex_);
  return !std::exchange(isWriting_, true);
}

std::optional<LogFileModel::EndedLog> LogFileModel::nextEndedLog() {
  base::MutexLock lock(mutex_);
  if (ended_.empty()) {
    isWriting_ = false;
    return std::nullopt;
  }
  EndedLog log = std::move(ended_.front());
  ended_.pop_front();
  return log;
}

void LogFileModel::write(EndedLog log) {
  auto folder = folderUseForSaving();
  if (!folder) folder = services_.files.desktopFolder();
  const std::string path = pathOfFile(folder.value_or(""), log.name);
  const std::optional<std::string> error =
      folder
          ? services_.files.writeAtomically(
                path, [&log](const auto& writer) { writeLogFileText(log.rows, log.first, writer); })
          : "there is no desktop folder for " + path;
  if (error) services_.console.writeLine("error " + *error);
  {
    base::MutexLock lock(mutex_);
    if (number_ == log.number) lastTimeStamp_ = std::nullopt;
  }
  services_.mainQueue.async(
      [self = shared_from_this(), number = log.number, path] { self->saved(number, path); });
}

void LogFileModel::saved(std::uint64_t number, const std::string& path) {
  notification_->notifyLoggingEnded(path);
  base::MutexLock lock(mutex_);
  if (number_ == number) filenameToUseForSaving_ = std::nullopt;
}

void LogFileModel::followFolder() {
  defaultsChanges_ = services_.defaults.observeChanges([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->refreshFolder();
  });
  refreshFolder();
}

void LogFileModel::refreshFolder() {
  std::uint64_t read = 0;
  {
    base::MutexLock lock(mutex_);
    read = ++folderReads_;
  }
  const std::optional<std::string> text =
      services_.defaults.textForKey(ports::settings_key::kPathFolderLocation);
  {
    base::MutexLock lock(mutex_);
    // Two threads change settings at once: what was read earlier does not undo what was read later.
    if (read < newestFolderRead_) return;
    newestFolderRead_ = read;
    if (text == folderUseForSaving_) return;
    folderUseForSaving_ = text ? std::optional(pathOfFolder(*text)) : std::nullopt;
  }
  publish();
}

}  // namespace pallimo::logging
