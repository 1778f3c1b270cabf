// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/machine_description.h"

namespace pallimo::adapters::simulated {

std::size_t MachineDescription::coreCount() const {
  std::size_t count = 0;
  for (const ClusterDescription& cluster : clusters) count += cluster.cores;
  return count;
}

std::size_t MachineDescription::coreCount(CoreKind kind) const {
  std::size_t count = 0;
  for (const ClusterDescription& cluster : clusters) {
    if (cluster.kind == kind) count += cluster.cores;
  }
  return count;
}

std::vector<CoreKind> MachineDescription::kinds() const {
  std::vector<CoreKind> present;
  for (const CoreKind kind : {CoreKind::super, CoreKind::performance, CoreKind::efficiency}) {
    if (coreCount(kind) > 0) present.push_back(kind);
  }
  return present;
}

double MachineDescription::peakMilliwatts() const {
  double sum = gpu.peakMilliwatts + anePeakMilliwatts;
  for (const ClusterDescription& cluster : clusters) sum += cluster.peakMilliwatts();
  return sum;
}

}  // namespace pallimo::adapters::simulated
