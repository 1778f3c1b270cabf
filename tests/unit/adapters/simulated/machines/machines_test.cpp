// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/machines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace pallimo::adapters::simulated {
namespace {

class BuiltinMachine : public ::testing::TestWithParam<std::size_t> {
 protected:
  const MachineDescription& machine() const { return builtinMachines()[GetParam()]; }
};

TEST_P(BuiltinMachine, HasRisingFrequencies) {
  const auto isRising = [](const std::vector<int>& table) {
    return !table.empty() && table.front() > 0 &&
           std::is_sorted(table.begin(), table.end(), std::less_equal<>());
  };
  for (const auto& cluster : machine().clusters) EXPECT_TRUE(isRising(cluster.frequencies));
  EXPECT_TRUE(isRising(machine().gpu.frequencies));
}

TEST_P(BuiltinMachine, CountsItsCoresByKind) {
  EXPECT_GT(machine().coreCount(), 0u);
  EXPECT_EQ(machine().coreCount(), machine().coreCount(CoreKind::efficiency) +
                                       machine().coreCount(CoreKind::performance) +
                                       machine().coreCount(CoreKind::super));
}

TEST_P(BuiltinMachine, HasAtLeastTwoKindsOfCoreFastestFirst) {
  const std::vector<CoreKind> kinds = machine().kinds();
  EXPECT_GE(kinds.size(), 2u);
  EXPECT_TRUE(std::is_sorted(kinds.begin(), kinds.end(), std::greater<>()));
}

TEST_P(BuiltinMachine, HasSensorsOfItsSourceInEveryPart) {
  const auto isServed = [this](const SensorNames& sensors) {
    return !(machine().temperatures == TemperatureSource::smc ? sensors.smc : sensors.hid).empty();
  };
  for (const auto& cluster : machine().clusters) EXPECT_TRUE(isServed(cluster.sensors));
  EXPECT_TRUE(isServed(machine().gpu.sensors));
}

TEST_P(BuiltinMachine, DrawsItsPartsPeaksAtMost) {
  double sum = machine().gpu.peakMilliwatts + machine().anePeakMilliwatts;
  for (const auto& cluster : machine().clusters) {
    sum += cluster.peakCoreMilliwatts * static_cast<double>(cluster.cores);
  }
  EXPECT_DOUBLE_EQ(machine().peakMilliwatts(), sum);
}

TEST_P(BuiltinMachine, IsFoundByItsName) { EXPECT_EQ(findMachine(machine().name), &machine()); }

INSTANTIATE_TEST_SUITE_P(All, BuiltinMachine,
                         ::testing::Range<std::size_t>(0, builtinMachines().size()));

TEST(Machines, AreFoundWhateverTheCase) {
  ASSERT_NE(findMachine("macbook pro m2 PRO"), nullptr);
  EXPECT_EQ(findMachine("macbook pro m2 PRO")->name, "MacBook Pro M2 Pro");
}

TEST(Machines, AnUnknownNameIsNotFound) {
  EXPECT_EQ(findMachine("MacBook Pro M2"), nullptr);
  EXPECT_EQ(findMachine(""), nullptr);
}

TEST(Machines, TheDefaultIsTheMacBookPro) { EXPECT_EQ(defaultMachineName(), "MacBook Pro M2 Pro"); }

TEST(Machines, AreListedOneALine) {
  // clang-format off
  EXPECT_EQ(machineList(), (std::vector<std::string>{
          "MacBook Air M1       Apple M1       "
          " 8 cores: E 4, P 4                             8-core GPU   temperatures: HID",
          "MacBook Pro M1 Pro   Apple M1 Pro    "
          "10 cores: E 2, P0 4, P1 4                     16-core GPU  temperatures: SMC",
          "MacBook Pro M2 Pro   Apple M2 Pro    "
          "12 cores: E 4, P0 4, P1 4                     19-core GPU  temperatures: SMC",
          "Mac Studio M2 Ultra  Apple M2 Ultra  "
          "24 cores: E0 4, P0 4, P1 4, E1 4, P2 4, P3 4  60-core GPU  temperatures: SMC",
          "Mac mini M4          Apple M4        "
          "10 cores: E 6, P 4                            10-core GPU  temperatures: SMC",
          "MacBook Pro M4 Max   Apple M4 Max    "
          "16 cores: E 4, P0 6, P1 6                     40-core GPU  temperatures: SMC",
          "MacBook Pro M5 Pro   Apple M5 Pro    "
          "18 cores: P0 6, P1 6, S 6                     20-core GPU  temperatures: SMC",
  }));
  // clang-format on
}

TEST(Machines, ARecordingIsListedByNameAndFolder) {
  EXPECT_EQ(recordingLine("My Mac", "/tmp/one"), "My Mac               recording  /tmp/one");
  EXPECT_EQ(recordingLine("A Mac with quite a long name", "/a"),
            "A Mac with quite a long name  recording  /a");
  EXPECT_EQ(recordingLine("two\nlines", "/a\nb"), "two\\nlines           recording  /a\\nb");
}

/// "E-Cluster 600-2064", the ends of every table, the GPU's last.
std::vector<std::string> tableEnds(const std::string& name) {
  const MachineDescription& machine = *findMachine(name);
  const auto ends = [](const std::string& unit, const std::vector<int>& table) {
    return unit + " " + std::to_string(table.front()) + "-" + std::to_string(table.back());
  };
  std::vector<std::string> texts;
  for (const auto& cluster : machine.clusters) {
    texts.push_back(ends(cluster.name, cluster.frequencies));
  }
  texts.push_back(ends("GPU", machine.gpu.frequencies));
  return texts;
}

TEST(Machines, HaveTheFrequenciesOfTheirChips) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(tableEnds("MacBook Air M1"),
            (Texts{"E-Cluster 600-2064", "P-Cluster 600-3204", "GPU 396-1278"}));
  EXPECT_EQ(tableEnds("MacBook Pro M1 Pro"), (Texts{"E-Cluster 600-2064", "P0-Cluster 600-3228",
                                                    "P1-Cluster 600-3228", "GPU 388-1296"}));
  EXPECT_EQ(tableEnds("MacBook Pro M2 Pro"), (Texts{"E-Cluster 600-2424", "P0-Cluster 660-3504",
                                                    "P1-Cluster 660-3504", "GPU 444-1398"}));
  EXPECT_EQ(
      tableEnds("Mac Studio M2 Ultra"),
      (Texts{"E0-Cluster 912-2424", "P0-Cluster 702-3504", "P1-Cluster 702-3504",
             "E1-Cluster 912-2424", "P2-Cluster 702-3504", "P3-Cluster 702-3504", "GPU 444-1398"}));
  EXPECT_EQ(tableEnds("Mac mini M4"),
            (Texts{"E-Cluster 1020-2892", "P-Cluster 1260-4464", "GPU 338-1578"}));
  EXPECT_EQ(tableEnds("MacBook Pro M4 Max"), (Texts{"E-Cluster 1020-2592", "P0-Cluster 1260-4512",
                                                    "P1-Cluster 1260-4512", "GPU 338-1578"}));
  EXPECT_EQ(tableEnds("MacBook Pro M5 Pro"), (Texts{"P0-Cluster 972-4308", "P1-Cluster 972-4308",
                                                    "S-Cluster 1308-4608", "GPU 338-1620"}));
}

TEST(Machines, HaveTheirModelIdentifiers) {
  std::vector<std::string> models;
  for (const MachineDescription& machine : builtinMachines()) models.push_back(machine.model);
  EXPECT_EQ(models, (std::vector<std::string>{"MacBookAir10,1", "MacBookPro18,3", "Mac14,9",
                                              "Mac14,14", "Mac16,10", "Mac16,5", "Mac17,9"}));
}

TEST(Machines, TheMacBookProHasTheClustersOfItsChip) {
  const MachineDescription& machine = *findMachine("MacBook Pro M2 Pro");
  ASSERT_EQ(machine.clusters.size(), 3u);
  EXPECT_EQ(machine.clusters[0].frequencies.front(), 600);
  EXPECT_EQ(machine.clusters[0].frequencies.back(), 2424);
  EXPECT_EQ(machine.clusters[1].frequencies.front(), 660);
  EXPECT_EQ(machine.clusters[1].frequencies.back(), 3504);
  EXPECT_EQ(machine.clusters[1].frequencies.size(), 17u);
  EXPECT_EQ(machine.gpu.frequencies.front(), 444);
  EXPECT_EQ(machine.gpu.frequencies.back(), 1398);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
