// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_data.h"

#include <time.h>

#include <array>
#include <cstddef>
#include <cstdio>

#include "base/text_format.h"

namespace pallimo::logging {

namespace {

using std::chrono::system_clock;

std::string localTimeOfDay(system_clock::time_point time) {
  // Floors, as date formatters do: a millisecond counts when it is over, also before 1970.
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time);
  const auto second = std::chrono::floor<std::chrono::seconds>(milliseconds);
  const time_t seconds = second.time_since_epoch().count();
  tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 64> buffer{};
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "%02d:%02d:%02d.%03d", local.tm_hour,
                    local.tm_min, local.tm_sec, static_cast<int>((milliseconds - second).count()));
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

std::string threeDecimals(double value) { return base::formatFixed(value, 3); }
std::string whole(double value) { return base::formatFixed(value, 0); }

}  // namespace

const std::string_view kCsvHeader =
    "System Time, Elapsed Time (sec), Package Power (Watt), CPU Power (Watt), DRAM Power (Watt), "
    "ANE Power (Watt), GPU Power (Watt), E-Core Frequency (Mhz), P-Core Frequency (Mhz), "
    "GPU Frequency (Mhz), CPU MIN Temperature (C), CPU AVG Temperature (C), "
    "CPU MAX Temperature (C), GPU AVG Temperature (C), CPU Utilization (%), "
    "E-Core Utilization (%), P-Core Utilization (%), GPU Utilization (%)";

LogFileData formatRow(const LogRow& row, system_clock::time_point first) {
  const std::chrono::duration<double> elapsed = row.time - first;
  const base::CLocaleScope scope;
  LogFileData data;
  data.timeStamp = localTimeOfDay(row.time);
  data.ellapsedTime = threeDecimals(elapsed.count());
  data.pkgPower = threeDecimals(row.pkgPower);
  data.cpuPower = threeDecimals(row.cpuPower);
  data.dramPower = threeDecimals(row.dramPower);
  data.anePower = threeDecimals(row.anePower);
  data.gpuPower = threeDecimals(row.gpuPower);
  data.cpuECoreFrequency = whole(row.cpuECoreFrequency);
  data.cpuPCoreFrequency = whole(row.cpuPCoreFrequency);
  data.gpuFrequency = whole(row.gpuFrequency);
  data.cpuAvgTmp = whole(row.cpuAvgTmp);
  data.cpuMaxTmp = whole(row.cpuMaxTmp);
  data.cpuMinTmp = whole(row.cpuMinTmp);
  data.gpuAvgTmp = whole(row.gpuAvgTmp);
  data.cpuUtilization = threeDecimals(row.cpuUtilization);
  data.cpuEUtilization = threeDecimals(row.cpuEUtilization);
  data.cpuPUtilization = threeDecimals(row.cpuPUtilization);
  data.gpuUtilization = threeDecimals(row.gpuUtilization);
  return data;
}

std::string csvLine(const LogFileData& data) {
  const std::array columns = {
      &data.timeStamp,         &data.ellapsedTime,   &data.pkgPower,       &data.cpuPower,
      &data.dramPower,         &data.anePower,       &data.gpuPower,       &data.cpuECoreFrequency,
      &data.cpuPCoreFrequency, &data.gpuFrequency,   &data.cpuMinTmp,      &data.cpuAvgTmp,
      &data.cpuMaxTmp,         &data.gpuAvgTmp,      &data.cpuUtilization, &data.cpuEUtilization,
      &data.cpuPUtilization,   &data.gpuUtilization,
  };
  constexpr std::size_t kUsualLength = 160;
  std::string line;
  line.reserve(kUsualLength);
  for (const std::string* column : columns) {
    if (column != columns.front()) line += ", ";
    line += *column;
  }
  return line;
}

}  // namespace pallimo::logging
