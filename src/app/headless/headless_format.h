// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "app/start/command_line.h"
#include "logging/log_row.h"
#include "sampling/cluster.h"

namespace pallimo::app {

/// What is printed of one sample.
struct HeadlessSample {
  logging::LogRow row;
  /// Those of the row's own document; left empty for a format that does not print them.
  std::vector<sampling::Cluster> clusters = {};
};

/// Turns the rows of a headless run into the text that it prints. No locale changes a figure.
/// One thread.
class HeadlessFormat {
 public:
  virtual ~HeadlessFormat() = default;

  /// The row's text with its line end; before it, where one is due, the header's. Rows come in the
  /// order of time; the first one's time is what elapsed time counts from.
  virtual std::string format(const HeadlessSample& sample) = 0;
};

/// Whether the format prints a sample's clusters: nobody gathers them for another one.
bool printsClusters(OutputFormat format);

std::unique_ptr<HeadlessFormat> makeHeadlessFormat(OutputFormat format);

/// `time` as ISO 8601 in the local time zone, milliseconds cut off and not rounded:
/// "2026-03-05T14:02:33.123+01:00".
std::string isoTime(std::chrono::system_clock::time_point time);

/// The sample as one JSON object without a line end: keys in the order of the log's record and then
/// the clusters, numbers in the log's units as they are, null for what is not finite. What
/// docs/json-stream.schema.json describes.
std::string jsonLine(const HeadlessSample& sample, std::chrono::system_clock::time_point first);

}  // namespace pallimo::app
