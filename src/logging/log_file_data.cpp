// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_data.h"

#include <array>
#include <cstddef>

#include "base/text_format.h"

namespace pallimo::logging {

namespace {

using std::chrono::system_clock;

/// Writes `value`, which is not negative, into the `digits` places that end before `end`.
void putDigits(std::string& text, std::size_t end, int digits, int value) {
  for (; digits > 0; --digits, value /= 10) text[--end] = static_cast<char>('0' + value % 10);
}

std::string textOf(base::TimeOfDay time) {
  const std::chrono::hh_mm_ss clock(time);
  std::string text = "00:00:00.000";
  putDigits(text, 2, 2, static_cast<int>(clock.hours().count()));
  putDigits(text, 5, 2, static_cast<int>(clock.minutes().count()));
  putDigits(text, 8, 2, static_cast<int>(clock.seconds().count()));
  putDigits(text, 12, 3, static_cast<int>(clock.subseconds().count()));
  return text;
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

LogFileData formatRow(const LogRow& row, system_clock::time_point first,
                      base::TimeOfDay timeOfDay) {
  const std::chrono::duration<double> elapsed = row.time - first;
  LogFileData data;
  data.timeStamp = textOf(timeOfDay);
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

LogFileData formatRow(const LogRow& row, system_clock::time_point first) {
  return formatRow(row, first, base::timeOfDay(base::localTime(row.time)));
}

void appendCsvLine(std::string& out, const LogFileData& data) {
  const std::array columns = {
      &data.timeStamp,         &data.ellapsedTime,   &data.pkgPower,       &data.cpuPower,
      &data.dramPower,         &data.anePower,       &data.gpuPower,       &data.cpuECoreFrequency,
      &data.cpuPCoreFrequency, &data.gpuFrequency,   &data.cpuMinTmp,      &data.cpuAvgTmp,
      &data.cpuMaxTmp,         &data.gpuAvgTmp,      &data.cpuUtilization, &data.cpuEUtilization,
      &data.cpuPUtilization,   &data.gpuUtilization,
  };
  for (const std::string* column : columns) {
    if (column != columns.front()) out += ", ";
    out += *column;
  }
}

std::string csvLine(const LogFileData& data) {
  constexpr std::size_t kUsualLength = 160;
  std::string line;
  line.reserve(kUsualLength);
  appendCsvLine(line, data);
  return line;
}

}  // namespace pallimo::logging
