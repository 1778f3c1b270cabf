// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pallimo::adapters::simulated {

/// What a cluster's cores are made for. It decides which work they get and where they are counted.
enum class CoreKind { efficiency, performance };

/// One CPU cluster. Its cores share the frequency table; processors are numbered through all
/// clusters in their order.
struct ClusterDescription {
  std::string name;  ///< as powermetrics names it, "P0-Cluster"
  CoreKind kind = CoreKind::performance;
  std::size_t cores = 0;
  std::vector<int> frequencies;   ///< MHz, rising
  double peakCoreMilliwatts = 0;  ///< one core, busy at the highest frequency
};

struct GpuDescription {
  int cores = 0;
  std::vector<int> frequencies;  ///< MHz, rising
  double peakMilliwatts = 0;
};

/// A Mac as data: everything in which one built-in machine differs from another.
struct MachineDescription {
  std::string name;       ///< "MacBook Pro M2 Pro"; what --machine takes
  std::string chip;       ///< the processor's brand, "Apple M2 Pro"
  std::string model;      ///< "Mac14,9"
  std::string osVersion;  ///< the system's build
  std::int64_t memoryBytes = 0;
  std::vector<ClusterDescription> clusters;
  GpuDescription gpu;
  double anePeakMilliwatts = 0;

  std::size_t coreCount() const;
  std::size_t coreCount(CoreKind kind) const;
};

}  // namespace pallimo::adapters::simulated
