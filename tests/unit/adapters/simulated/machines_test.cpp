// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines.h"

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
  EXPECT_EQ(machine().coreCount(),
            machine().coreCount(CoreKind::efficiency) + machine().coreCount(CoreKind::performance));
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
  EXPECT_EQ(machineList(),
            std::vector<std::string>{"MacBook Pro M2 Pro  Apple M2 Pro  12 cores: E-Cluster 4, "
                                     "P0-Cluster 4, P1-Cluster 4  19-core GPU"});
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
