// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <string>
#include <string_view>

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

/// Formats `row`; `first` is the time of the log's first row.
LogFileData formatRow(const LogRow& row, std::chrono::system_clock::time_point first);

/// The row as a line of the file, without its line end.
std::string csvLine(const LogFileData& data);

}  // namespace pallimo::logging
