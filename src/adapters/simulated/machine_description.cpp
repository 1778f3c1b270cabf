// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machine_description.h"

namespace pallimo::adapters::simulated {

std::size_t MachineDescription::coreCount() const {
  return coreCount(CoreKind::efficiency) + coreCount(CoreKind::performance);
}

std::size_t MachineDescription::coreCount(CoreKind kind) const {
  std::size_t count = 0;
  for (const ClusterDescription& cluster : clusters) {
    if (cluster.kind == kind) count += cluster.cores;
  }
  return count;
}

}  // namespace pallimo::adapters::simulated
