// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

#include "logging/log_row.h"

namespace pallimo::benchmarks {

inline constexpr int kRowsOfADay = 86'400;

/// Figures of a busy machine, another one each second of the first thousand, which then come again.
inline logging::LogRow exampleRow(int second) {
  logging::LogRow row;
  row.time = std::chrono::system_clock::time_point(std::chrono::seconds(1'772'715'753 + second) +
                                                   std::chrono::microseconds(second % 977));
  const double load = (second * 37 % 1000) / 1000.0;
  row.pkgPower = 3.7 + 41.13 * load;
  row.cpuPower = 1.9 + 30.57 * load;
  row.gpuPower = 0.8 + 8.31 * load;
  row.anePower = 0.01 * load;
  row.cpuECoreFrequency = 1020.3 + 1400 * load;
  row.cpuPCoreFrequency = 1300.9 + 2700 * load;
  row.gpuFrequency = 338 + 1000 * load;
  row.cpuMinTmp = 38.2 + 20 * load;
  row.cpuAvgTmp = 44.71 + 30 * load;
  row.cpuMaxTmp = 51.3 + 45 * load;
  row.gpuAvgTmp = 41.05 + 25 * load;
  row.cpuUtilization = 100 * load / 1.3;
  row.cpuEUtilization = 100 * load / 1.1;
  row.cpuPUtilization = 100 * load / 1.7;
  row.gpuUtilization = 100 * load;
  return row;
}

}  // namespace pallimo::benchmarks
