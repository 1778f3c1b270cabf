// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_name.h"

#include <array>
#include <cstddef>
#include <cstdio>

#include "base/civil_time.h"

namespace pallimo::logging {

std::string logFileName(std::chrono::system_clock::time_point start) {
  const base::CivilTime local = base::localTime(start);
  std::array<char, 128> buffer{};
  const int length = std::snprintf(
      buffer.data(), buffer.size(), "PwrData %04d-%02d-%02d at %02d.%02d.%02d",
      base::weekBasedYear(local), local.month, local.day, local.hour, local.minute, local.second);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

}  // namespace pallimo::logging
