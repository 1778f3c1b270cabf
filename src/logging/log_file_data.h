// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "base/civil_time.h"
#include "logging/log_row.h"

namespace pallimo::logging {

/// One row of the log, each field already formatted. The fields stand in the record's own order;
/// a line of the file writes the temperatures as minimum, average, maximum.
struct LogFileData {
  std::string timeStamp;     ///< local time of day, HH:mm:ss.SSS
  std::string ellapsedTime;  ///< seconds since the first row
  std::string pkgPower;
  std::string cpuPower;
  std::string dramPower;
  std::string anePower;
  std::string gpuPower;
  std::string cpuECoreFrequency;
  std::string cpuPCoreFrequency;
  std::string gpuFrequency;
  std::string cpuAvgTmp;
  std::string cpuMaxTmp;
  std::string cpuMinTmp;
  std::string gpuAvgTmp;
  std::string cpuUtilization;
  std::string cpuEUtilization;
  std::string cpuPUtilization;
  std::string gpuUtilization;
};

/// The first line of a log, without its line end.
extern const std::string_view kCsvHeader;

/// Formats `row`; `first` is the time of the log's first row, `timeOfDay` what the clock on the
/// wall showed when this one was taken. No locale changes a figure. Pure.
LogFileData formatRow(const LogRow& row, std::chrono::system_clock::time_point first,
                      base::TimeOfDay timeOfDay);
/// The same, with the clock of the zone in which the process is now. Any thread.
LogFileData formatRow(const LogRow& row, std::chrono::system_clock::time_point first);

/// Appends the row as a line of the file, without its line end. Pure.
void appendCsvLine(std::string& out, const LogFileData& data);
/// The same as a text of its own.
std::string csvLine(const LogFileData& data);

}  // namespace pallimo::logging
