// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

#include "ports/system_log.h"

namespace pallimo::adapters::common {

/// The system's log through syslog(3). Any thread. One at a time: the program's name belongs to the
/// process. Without a log daemon lines are lost silently; nothing is written to the terminal.
class SyslogLog final : public ports::SystemLog {
 public:
  /// `program` stands before every line, with the process number.
  explicit SyslogLog(std::string program);
  ~SyslogLog() override;
  SyslogLog(const SyslogLog&) = delete;
  SyslogLog& operator=(const SyslogLog&) = delete;

  void write(std::string_view line) override;

 private:
  const std::string program_;  // syslog keeps a pointer to it
};

}  // namespace pallimo::adapters::common
