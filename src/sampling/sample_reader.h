// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/property_list.h"

namespace pallimo::sampling {

using PowerValues = std::map<std::string, base::PropertyList, std::less<>>;
using ClusterFrequencies = std::map<std::string, double, std::less<>>;
using GPUFrequency = std::map<std::string, base::PropertyList, std::less<>>;
using ClusterCPUs = std::map<std::string, std::vector<std::int64_t>, std::less<>>;

/// The number under a key of PowerValues or of GPUFrequency, which are one type; 0 without one.
inline double numberUnder(std::string_view key, const PowerValues& values) {
  const auto found = values.find(key);
  return found == values.end() ? 0 : found->second.numberOr(0);
}

/// The current sample, as the modules read it. Any thread; each read works on the sample that was
/// current when it began.
class SampleReader {
 public:
  virtual ~SampleReader() = default;

  /// At most "cpu_energy", "dram_energy", "combined_power", "gpu_energy", "ane_energy", each the
  /// document's value unchanged: millijoules over the sampling period, combined_power milliwatts.
  virtual PowerValues getPowerValues() const = 0;
  /// Exactly "E-Cluster" and "P-Cluster": the highest frequency of the kind's clusters, MHz.
  virtual ClusterFrequencies getClusterFrequencies() const = 0;
  /// Empty, or "freq_hz" alone: the document's value unchanged, which is megahertz.
  virtual GPUFrequency getGPUFrequency() const = 0;
  /// Empty, or exactly "E-Cluster" and "P-Cluster": the kind's logical CPU numbers.
  virtual ClusterCPUs getClusterCPUs() const = 0;
  /// The sampling period that requests carry, milliseconds; at least 100.
  virtual double msSampling() const = 0;
};

}  // namespace pallimo::sampling
