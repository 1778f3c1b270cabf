// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "app/command_line.h"
#include "logging/log_row.h"

namespace pallimo::app {

/// Turns the rows of a headless run into the text that it prints. No locale changes a figure.
/// One thread.
class HeadlessFormat {
 public:
  virtual ~HeadlessFormat() = default;

  /// The row's text with its line end; before it, where one is due, the header's. Rows come in the
  /// order of time; the first one's time is what elapsed time counts from.
  virtual std::string format(const logging::LogRow& row) = 0;
};

std::unique_ptr<HeadlessFormat> makeHeadlessFormat(OutputFormat format);

/// `time` as ISO 8601 in the local time zone, milliseconds cut off and not rounded:
/// "2026-03-05T14:02:33.123+01:00".
std::string isoTime(std::chrono::system_clock::time_point time);

/// The row as one JSON object without a line end: keys in the order of the log's record, numbers
/// in the log's units as they are, null for what is not finite.
std::string jsonLine(const logging::LogRow& row, std::chrono::system_clock::time_point first);

}  // namespace pallimo::app
