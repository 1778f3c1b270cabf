// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr std::int64_t kCpuTypeArm64 = 0x0100000C;
constexpr std::int64_t kPageSize = 16384;

std::string nameOf(CoreKind kind) {
  switch (kind) {
    case CoreKind::efficiency:
      return "Efficiency";
    case CoreKind::performance:
      return "Performance";
    case CoreKind::super:
      return "Super";
  }
  return {};
}

}  // namespace

SystemControlValues systemControlsOf(const MachineDescription& machine) {
  const auto cores = static_cast<std::int64_t>(machine.coreCount());
  const std::vector<CoreKind> kinds = machine.kinds();
  SystemControlValues values{
      {"hw.activecpu", cores},
      {"hw.cputype", kCpuTypeArm64},
      {"hw.logicalcpu", cores},
      {"hw.memsize", machine.memoryBytes},
      {"hw.model", machine.model},
      {"hw.ncpu", cores},
      {"hw.nperflevels", static_cast<std::int64_t>(kinds.size())},
      {"hw.pagesize", kPageSize},
      {"hw.physicalcpu", cores},
      {"kern.osversion", machine.osVersion},
      {"machdep.cpu.brand_string", machine.chip},
  };
  for (std::size_t level = 0; level < kinds.size(); ++level) {
    const std::string prefix = "hw.perflevel" + std::to_string(level);
    const auto count = static_cast<std::int64_t>(machine.coreCount(kinds[level]));
    values.emplace(prefix + ".logicalcpu", count);
    values.emplace(prefix + ".name", nameOf(kinds[level]));
  }
  return values;
}

}  // namespace pallimo::adapters::simulated
