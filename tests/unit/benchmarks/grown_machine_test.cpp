// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "benchmarks/grown_machine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "sampling/sample_parser.h"

namespace pallimo::benchmarks {
namespace {

base::PropertyList sampleOf(const MachineDescription& machine) {
  return sampling::parseSample(adapters::libplist::LibplistReader(), documentOf(machine));
}

/// The numbers of all processors that the modules know the kind of, sorted.
std::vector<std::int64_t> knownProcessors(const MachineDescription& machine) {
  std::vector<std::int64_t> all;
  for (const auto& [kind, numbers] : sampling::clusterCPUs(sampleOf(machine))) {
    all.insert(all.end(), numbers.begin(), numbers.end());
  }
  std::sort(all.begin(), all.end());
  return all;
}

std::vector<std::int64_t> numbersBelow(std::size_t end) {
  std::vector<std::int64_t> numbers(end);
  std::iota(numbers.begin(), numbers.end(), std::int64_t{0});
  return numbers;
}

TEST(GrownMachine, HasAsManyProcessorsAsItIsAskedForAndEachOfThemInAKnownCluster) {
  for (const std::size_t processors : {1, 2, 5, 6, 10, 24, 99, 100, 101, 1000}) {
    const MachineDescription machine = machineOfProcessors(processors);
    EXPECT_EQ(machine.coreCount(), processors);
    EXPECT_EQ(knownProcessors(machine), numbersBelow(processors));
  }
}

TEST(GrownMachine, HasClustersOfFiveUntilTheirNamesAreUsedUp) {
  EXPECT_EQ(machineOfProcessors(1).clusters.size(), 1u);
  EXPECT_EQ(machineOfProcessors(6).clusters.size(), 2u);
  EXPECT_EQ(machineOfProcessors(100).clusters.size(), 20u);
  EXPECT_EQ(machineOfProcessors(1000).clusters.size(), 20u);
  EXPECT_EQ(machineOfProcessors(1000).clusters.back().name, "P9-Cluster");
}

TEST(GrownMachine, KeepsItsTemperatureSensors) {
  EXPECT_EQ(machineOfProcessors(100).clusters[0].sensors.smc.size(), 20u);
  EXPECT_EQ(machineOfProcessors(100).gpu.sensors.smc.size(), 20u);
}

TEST(GrownMachine, ListsSoManyStatesForEachProcessorClusterAndTheGPU) {
  const base::Bytes document = documentOf(machineOfStates(23));
  const std::string text(document.begin(), document.end());
  std::size_t frequencies = 0;
  for (std::size_t at = text.find("<key>freq</key>"); at != std::string::npos;
       at = text.find("<key>freq</key>", at + 1)) {
    ++frequencies;
  }
  constexpr std::size_t kLists = 24 + 6 + 1;
  EXPECT_EQ(frequencies, 23 * kLists);
}

TEST(GrownMachine, PrintsADocumentOfAboutTheSizeThatItIsAskedFor) {
  for (const std::size_t bytes : {55'000, 550'000, 5'000'000}) {
    const auto size = static_cast<double>(documentOf(machineOfBytes(bytes)).size());
    const auto asked = static_cast<double>(bytes);
    EXPECT_NEAR(size, asked, asked / 20);
  }
}

TEST(GrownMachine, PrintsFiguresForAllThatTheModulesRead) {
  const base::PropertyList sample = sampleOf(machineOfBytes(55'000));
  EXPECT_GT(sampling::clusterFrequencies(sample).at("E-Cluster"), 0);
  EXPECT_GT(sampling::clusterFrequencies(sample).at("P-Cluster"), 0);
  EXPECT_EQ(sampling::gpuFrequency(sample).count("freq_hz"), 1u);
  EXPECT_EQ(sampling::powerValues(sample).count("combined_power"), 1u);
}

}  // namespace
}  // namespace pallimo::benchmarks
