// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

#include "base/bytes.h"

namespace pallimo::scenarios {

/// The figures of one document of powermetrics, in its own units. Processor 0 is an efficiency
/// core, processor 1 a performance core.
struct SampleDocument {
  int combinedPower = 12000;  ///< mW
  int cpuEnergy = 4000;       ///< mJ over the period, as the four below
  int dramEnergy = 500;
  int aneEnergy = 50;
  int gpuEnergy = 1500;
  double efficiencyHz = 1.5e9;
  double performanceHz = 3.0e9;
  double gpuMegahertz = 444;  ///< "freq_hz" in the document
};

inline std::string xmlOf(const SampleDocument& sample) {
  const auto entry = [](const char* key, const char* kind, const std::string& value) {
    return "<key>" + std::string(key) + "</key><" + kind + ">" + value + "</" + kind + ">\n";
  };
  const auto cluster = [&](const char* name, double hertz, const char* cpu) {
    return "<dict>\n" + entry("name", "string", name) +
           entry("freq_hz", "real", std::to_string(hertz)) + "<key>cpus</key><array><dict>" +
           entry("cpu", "integer", cpu) + "</dict></array></dict>\n";
  };
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
         "<key>processor</key>\n<dict>\n<key>clusters</key>\n<array>\n" +
         cluster("E-Cluster", sample.efficiencyHz, "0") +
         cluster("P-Cluster", sample.performanceHz, "1") + "</array>\n" +
         entry("combined_power", "real", std::to_string(sample.combinedPower)) +
         entry("cpu_energy", "integer", std::to_string(sample.cpuEnergy)) +
         entry("dram_energy", "integer", std::to_string(sample.dramEnergy)) +
         entry("ane_energy", "integer", std::to_string(sample.aneEnergy)) +
         entry("gpu_energy", "integer", std::to_string(sample.gpuEnergy)) +
         "</dict>\n<key>gpu</key>\n<dict>\n" +
         entry("freq_hz", "real", std::to_string(sample.gpuMegahertz)) +
         "</dict>\n</dict>\n</plist>\n";
}

inline base::Bytes bytesOf(const SampleDocument& sample) {
  const std::string text = xmlOf(sample);
  return base::Bytes(text.begin(), text.end());
}

}  // namespace pallimo::scenarios
