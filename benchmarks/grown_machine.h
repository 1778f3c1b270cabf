// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "adapters/simulated/machines/builtin_machine.h"
#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/machines/powermetrics_document.h"
#include "base/bytes.h"

namespace pallimo::benchmarks {

// Machines larger than any that there is, and the documents that powermetrics would print on them.
// What is not said is that of the Mac Studio with an M2 Ultra: 24 processors in six clusters, lists
// of 6 and of 17 frequencies, 40 temperature sensors. Pure functions, any thread.

using adapters::simulated::MachineDescription;

/// A cluster has so many processors until the names of clusters are used up: E0 to E9, P0 to P9.
inline constexpr std::size_t kUsualClusterSize = 5;
inline constexpr std::size_t kMostClusters = 20;

/// A machine of so many processors, at least one. Clusters are E and P in turn, beginning with E,
/// of equal size but for one processor.
inline MachineDescription machineOfProcessors(std::size_t processors) {
  MachineDescription machine = adapters::simulated::macStudioM2Ultra();
  const auto efficiency = machine.clusters[0];
  const auto performance = machine.clusters[1];
  std::vector<std::string> sensors;
  for (const auto& cluster : machine.clusters) {
    sensors.insert(sensors.end(), cluster.sensors.smc.begin(), cluster.sensors.smc.end());
  }
  const std::size_t clusters = std::clamp<std::size_t>(
      (processors + kUsualClusterSize - 1) / kUsualClusterSize, 1, kMostClusters);
  machine.clusters.clear();
  for (std::size_t i = 0; i < clusters; ++i) {
    const bool isEfficiency = i % 2 == 0;
    auto& cluster = machine.clusters.emplace_back(isEfficiency ? efficiency : performance);
    cluster.name = (isEfficiency ? "E" : "P") + std::to_string(i / 2) + "-Cluster";
    cluster.cores = processors / clusters + (i < processors % clusters ? 1 : 0);
    cluster.sensors.smc.clear();
  }
  machine.clusters[0].sensors.smc = sensors;
  return machine;
}

/// The machine with so many frequencies, at least one, in every list: of each of its processors, of
/// its clusters and of its GPU.
inline MachineDescription machineOfStates(std::size_t states) {
  constexpr int kLowest = 600;  // MHz
  std::vector<int> frequencies;
  frequencies.reserve(states);
  for (std::size_t i = 0; i < states; ++i) frequencies.push_back(kLowest + static_cast<int>(i));
  MachineDescription machine = adapters::simulated::macStudioM2Ultra();
  for (auto& cluster : machine.clusters) cluster.frequencies = frequencies;
  machine.gpu.frequencies = frequencies;
  return machine;
}

/// What powermetrics prints on the machine after its first minute, with everything that the app
/// asks for.
inline base::Bytes documentOf(const MachineDescription& machine) {
  adapters::simulated::DocumentRequest request;
  request.time = 60;
  for (const char* sampler : {"cpu_power", "gpu_power", "ane_power", "thermal"}) {
    request.samplers.enable(sampler);
  }
  return adapters::simulated::powermetricsDocument(machine, request);
}

/// The machine whose lists of states are as long as it takes for a document of about so many bytes.
inline MachineDescription machineOfBytes(std::size_t bytes) {
  constexpr std::size_t kFew = 10;
  constexpr std::size_t kMore = 110;
  const auto sizeOf = [](std::size_t states) {
    return static_cast<double>(documentOf(machineOfStates(states)).size());
  };
  const double few = sizeOf(kFew);
  const double aState = (sizeOf(kMore) - few) / (kMore - kFew);
  const double states = kFew + (static_cast<double>(bytes) - few) / aState;
  return machineOfStates(static_cast<std::size_t>(std::max(1.0, std::round(states))));
}

}  // namespace pallimo::benchmarks
