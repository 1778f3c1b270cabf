// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "logging/log_file_data.h"

namespace pallimo::tests {

/// A record whose fields hold their own names, as pages write them.
inline logging::LogFileData namesOfFields() {
  return {"`timeStamp`",         "`ellapsedTime`",  "`pkgPower`",       "`cpuPower`",
          "`dramPower`",         "`anePower`",      "`gpuPower`",       "`cpuECoreFrequency`",
          "`cpuPCoreFrequency`", "`gpuFrequency`",  "`cpuAvgTmp`",      "`cpuMaxTmp`",
          "`cpuMinTmp`",         "`gpuAvgTmp`",     "`cpuUtilization`", "`cpuEUtilization`",
          "`cpuPUtilization`",   "`gpuUtilization`"};
}

}  // namespace pallimo::tests
