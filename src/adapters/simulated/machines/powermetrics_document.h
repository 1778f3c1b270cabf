// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/simulated/machines/machine_description.h"
#include "base/bytes.h"

namespace pallimo::adapters::simulated {

/// The samplers that a run of powermetrics was asked for.
struct Samplers {
  bool cpuPower = false;  ///< "cpu_power": the "processor" section
  bool gpuPower = false;  ///< "gpu_power": the "gpu" section
  bool anePower = false;  ///< "ane_power": known, adds nothing to what cpu_power prints
  bool thermal = false;   ///< "thermal": "thermal_pressure"

  /// Switches the named sampler on; false when there is none of that name.
  bool enable(std::string_view name);
};

/// One sample of a built-in machine.
struct DocumentRequest {
  std::uint64_t seed = 1;
  double startTime = 0;  ///< seconds since 1970 when the simulation began
  double time = 0;       ///< simulated seconds since then at which the sample ends
  std::chrono::milliseconds period{1000};
  Samplers samplers;
};

/// The property list that `powermetrics -n 1 -f plist` of macOS 13 and later prints: XML, nothing
/// indented, lines end in LF, numbers in the C locale whatever the process's is. A pure function:
/// the same arguments give the same bytes. Any thread.
///
/// Units are the tool's: "freq_hz" in hertz for clusters and processors and in megahertz for the
/// GPU, energies in whole millijoules over "elapsed_ns" (which is up to two percent longer than the
/// period, as on a Mac), powers in milliwatts. Each power is its energy divided by the elapsed
/// time, and "combined_power" is the sum of CPU, GPU and neural engine. There is no "dram_energy".
base::Bytes powermetricsDocument(const MachineDescription& machine, const DocumentRequest& request);

}  // namespace pallimo::adapters::simulated
