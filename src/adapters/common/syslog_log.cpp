// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/syslog_log.h"

#include <syslog.h>

#include <algorithm>
#include <utility>

namespace pallimo::adapters::common {

SyslogLog::SyslogLog(std::string program) : program_(std::move(program)) {
  openlog(program_.c_str(), LOG_PID, LOG_USER);
}

SyslogLog::~SyslogLog() { closelog(); }

void SyslogLog::write(std::string_view line) {
  constexpr std::size_t kLongest = 8192;  // what log daemons take by default
  syslog(LOG_NOTICE, "%.*s", static_cast<int>(std::min(line.size(), kLongest)), line.data());
}

}  // namespace pallimo::adapters::common
