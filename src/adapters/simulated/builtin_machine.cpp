// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr std::int64_t kCpuTypeArm64 = 0x0100000C;
constexpr std::int64_t kPageSize = 16384;
constexpr std::int64_t kGibibyte = std::int64_t{1} << 30;

}  // namespace

MachineDescription macBookProM2Pro() {
  const std::vector<int> efficiency{600, 912, 1284, 1752, 2004, 2256, 2424};
  const std::vector<int> performance{660,  924,  1188, 1452, 1704, 1968, 2208, 2400, 2568,
                                     2724, 2868, 3000, 3132, 3264, 3360, 3408, 3504};
  MachineDescription machine;
  machine.name = "MacBook Pro M2 Pro";
  machine.chip = "Apple M2 Pro";
  machine.model = "Mac14,9";
  machine.osVersion = "23G93";
  machine.memoryBytes = 16 * kGibibyte;
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 4, efficiency, 420},
                      {"P0-Cluster", CoreKind::performance, 4, performance, 4300},
                      {"P1-Cluster", CoreKind::performance, 4, performance, 4300}};
  machine.gpu = {19, {444, 612, 808, 968, 1110, 1236, 1338, 1398}, 21000};
  machine.anePeakMilliwatts = 3800;
  return machine;
}

SystemControlValues systemControlsOf(const MachineDescription& machine) {
  const auto cores = static_cast<std::int64_t>(machine.coreCount());
  const auto fast = static_cast<std::int64_t>(machine.coreCount(CoreKind::performance));
  const auto slow = static_cast<std::int64_t>(machine.coreCount(CoreKind::efficiency));
  return {
      {"hw.activecpu", cores},
      {"hw.cputype", kCpuTypeArm64},
      {"hw.logicalcpu", cores},
      {"hw.memsize", machine.memoryBytes},
      {"hw.model", machine.model},
      {"hw.ncpu", cores},
      {"hw.nperflevels", std::int64_t{2}},
      {"hw.pagesize", kPageSize},
      {"hw.perflevel0.logicalcpu", fast},
      {"hw.perflevel0.name", std::string("Performance")},
      {"hw.perflevel1.logicalcpu", slow},
      {"hw.perflevel1.name", std::string("Efficiency")},
      {"hw.physicalcpu", cores},
      {"kern.osversion", machine.osVersion},
      {"machdep.cpu.brand_string", machine.chip},
  };
}

}  // namespace pallimo::adapters::simulated
