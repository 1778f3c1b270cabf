// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "logging/log_row.h"
#include "ports/metrics_server.h"

namespace pallimo::serving {

/// What the machine is; what could not be read is absent.
struct MachineInfo {
  std::string model;  ///< "Mac14,9"
  std::string chip;   ///< "Apple M2 Pro"
  std::optional<std::string> gpu;
  std::optional<std::int64_t> efficiencyCores;
  std::optional<std::int64_t> performanceCores;
  std::optional<std::int64_t> gpuCores;
};

/// Which figures of a row were measured. The row holds 0 where a figure was not; what it holds as
/// not a number, or as the -1 of a sensor that is silent, tells itself.
struct MeasuredFigures {
  bool pkgPower = false;
  bool cpuPower = false;
  bool dramPower = false;
  bool anePower = false;
  bool gpuPower = false;
  bool cpuECoreFrequency = false;
  bool cpuPCoreFrequency = false;
  bool gpuFrequency = false;
  /// Which processors are of which kind was known.
  bool coreUtilization = false;
  bool gpuUtilization = false;
  bool operator==(const MeasuredFigures&) const = default;
};

/// The figures of one sample.
struct ServedSample {
  logging::LogRow row;
  MeasuredFigures measured;
  double samplingPeriod = 0;  ///< ms that powermetrics measured for
};

/// Everything that one scrape tells; immutable once it is shared.
struct ServedState {
  std::string version;                          ///< the app's
  std::shared_ptr<const MachineInfo> machine;   ///< nullptr until it was read
  std::shared_ptr<const ServedSample> current;  ///< nullptr: there are no figures at the moment
  std::uint64_t samples = 0;                    ///< since the program's start
  std::optional<double> lastSample;             ///< s since 1970; absent before the first one
};

/// The families of a scrape, in base units (watts, hertz, degrees Celsius, ratios of 1, seconds). A
/// figure that is not there has no series, a family without series is left out. Pure.
ports::MetricFamilies metricFamilies(const ServedState& state, bool isHelperUp);

}  // namespace pallimo::serving
