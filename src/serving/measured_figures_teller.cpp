// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/measured_figures_teller.h"

#include <string_view>

namespace pallimo::serving {

namespace {

using sampling::SampleReader;

template <typename Table>
bool holdsNumber(const Table& table, std::string_view key) {
  const auto found = table.find(key);
  return found != table.end() && found->second.isNumber();
}

/// A cluster that rests stands at 0 and is there all the same: it has processors.
bool hasCluster(const sampling::ClusterFrequencies& frequencies, const sampling::ClusterCPUs& cpus,
                std::string_view kind) {
  const auto frequency = frequencies.find(kind);
  if (frequency != frequencies.end() && frequency->second != 0) return true;
  const auto list = cpus.find(kind);
  return list != cpus.end() && !list->second.empty();
}

}  // namespace

MeasuredFigures MeasuredFiguresTeller::tell(const SampleReader& reader, bool isGPUUtilizationTold) {
  const sampling::PowerValues power = reader.getPowerValues();
  const sampling::ClusterFrequencies frequencies = reader.getClusterFrequencies();
  const sampling::ClusterCPUs cpus = reader.getClusterCPUs();
  if (!cpus.empty()) areClustersNamed_ = true;
  return {.pkgPower = holdsNumber(power, "combined_power"),
          .cpuPower = holdsNumber(power, "cpu_energy"),
          .dramPower = holdsNumber(power, "dram_energy"),
          .anePower = holdsNumber(power, "ane_energy"),
          .gpuPower = holdsNumber(power, "gpu_energy"),
          .cpuECoreFrequency = hasCluster(frequencies, cpus, "E-Cluster"),
          .cpuPCoreFrequency = hasCluster(frequencies, cpus, "P-Cluster"),
          .gpuFrequency = holdsNumber(reader.getGPUFrequency(), "freq_hz"),
          .coreUtilization = areClustersNamed_,
          .gpuUtilization = isGPUUtilizationTold};
}

}  // namespace pallimo::serving
