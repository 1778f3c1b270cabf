// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "adapters/simulated/recordings/simulated_system_controls.h"
#include "adapters/simulated/text/file_bytes.h"
#include "base/bytes.h"
#include "base/property_list.h"
#include "ports/processor_ticks.h"

namespace pallimo::adapters::simulated {

/// The 32 bytes that reading an SMC key answers; absent when the read fails.
using SmcBytes = std::optional<std::array<std::uint8_t, 32>>;

/// One key of the SMC, at its index.
struct SmcKey {
  std::string key;         ///< four characters, "Te05"
  std::string type;        ///< four characters, "flt "
  std::uint32_t size = 4;  ///< of the value, bytes
  SmcBytes bytes;
  bool indexFails = false;  ///< the key-at-index command fails here
  bool infoFails = false;   ///< the key-info command fails

  bool operator==(const SmcKey&) const = default;
};

/// The SMC as it was recorded.
struct RecordedSmc {
  bool isAvailable = false;                   ///< the service can be opened
  std::optional<std::uint32_t> keyCount = 0;  ///< what "#KEY" answers; absent: that read fails
  /// In index order; indices past the end fail. When a name is there twice, the first one answers.
  std::vector<SmcKey> keys;

  bool operator==(const RecordedSmc&) const = default;
};

/// One HID temperature sensor.
struct HidReading {
  std::optional<std::int64_t> locationID;  ///< absent: the property is missing or mistyped
  std::optional<double> value;             ///< absent: the sensor has no event

  bool operator==(const HidReading&) const = default;
};

/// Reading is tried again until it succeeds, so that a larger number would hold up the sample.
inline constexpr std::uint32_t kMostReadFailures = 1000;

/// One graphics accelerator. A property may be absent or of any kind: whoever reads the registry
/// checks it, as on a Mac. "vendor-id" is data when it was recorded as text. JSON's null reads as
/// an absent property.
struct RecordedAccelerator {
  std::optional<base::PropertyList> vendorId;               ///< "vendor-id"
  std::optional<base::PropertyList> model;                  ///< "model"
  std::optional<base::PropertyList> performanceStatistics;  ///< "PerformanceStatistics"
  /// How often reading the entry's properties fails before it succeeds, at most kMostReadFailures.
  std::uint32_t readFailures = 0;

  bool operator==(const RecordedAccelerator&) const = default;
};

/// What the operating system answered during one request. A built-in machine makes such steps too,
/// so that all sensors know one shape alone.
struct RecordingStep {
  std::optional<std::string> powermetrics;     ///< file of the run's output; absent: no bytes
  std::map<std::string, SmcBytes> smc;         ///< values that differ in this step, by key name
  std::optional<std::vector<HidReading>> hid;  ///< absent: no services
  std::optional<std::vector<ports::ProcessorTickCounts>> ticks;  ///< absent: the call fails
  std::optional<std::vector<RecordedAccelerator>> accelerators;  ///< absent: the search fails

  bool operator==(const RecordingStep&) const = default;
};

/// Of a document or a report, bytes. More than any document that a helper passes on.
inline constexpr std::size_t kLargestRecordedFile = std::size_t{64} * 1024 * 1024;

/// A folder that stands in for one Mac: what the operating system would have answered, step by
/// step. Made by readRecording(), which has checked everything. A value; any thread.
///
/// Steps are counted from zero here, requests from one. What start-up reads is that of step 0.
struct Recording {
  std::string folder;
  std::string name;
  SystemControlValues sysctl;
  /// File of the report, by data type; absent: the program cannot be started.
  std::map<std::string, std::string> systemProfiler;
  RecordedSmc smc;
  std::vector<RecordingStep> steps;  ///< at least one

  /// The step that the n-th request of a connection uses. After the last step the recording begins
  /// again at the first.
  std::size_t stepForRequest(std::uint64_t request) const;

  /// The bytes that a run of powermetrics prints during the step, read from the file that the step
  /// names; no bytes when it is empty. An error when it can't be read any more.
  std::variant<base::Bytes, FileError> documentBytes(std::size_t step) const;

  /// What the profiler prints for a data type, read from its file, which may be empty. Nothing when
  /// no file is named or it can't be read any more.
  std::optional<base::Bytes> reportBytes(const std::string& dataType) const;

  /// The path of a file that the recording names.
  std::string pathOf(const std::string& file) const { return folder + "/" + file; }

  bool operator==(const Recording&) const = default;
};

}  // namespace pallimo::adapters::simulated
