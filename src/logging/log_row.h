// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>

namespace pallimo::logging {

/// The modules' values at one sample, unrounded, in the log's units. Taken once, at the engine's
/// log step, for everyone who wants rows.
struct LogRow {
  std::chrono::system_clock::time_point time;  ///< wall clock when the row was taken
  double pkgPower = 0;                         ///< W, as the four below
  double cpuPower = 0;
  double dramPower = 0;
  double anePower = 0;
  double gpuPower = 0;
  double cpuECoreFrequency = 0;  ///< MHz, as the two below
  double cpuPCoreFrequency = 0;
  double gpuFrequency = 0;
  double cpuAvgTmp = 0;  ///< °C, as the three below
  double cpuMaxTmp = 0;
  double cpuMinTmp = 0;
  double gpuAvgTmp = 0;
  double cpuUtilization = 0;  ///< percent, as the three below
  double cpuEUtilization = 0;
  double cpuPUtilization = 0;
  double gpuUtilization = 0;
};

}  // namespace pallimo::logging
