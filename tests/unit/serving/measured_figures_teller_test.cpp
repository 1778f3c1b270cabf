// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/measured_figures_teller.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "fakes/fake_sample_reader.h"

namespace pallimo::serving {
namespace {

using base::PropertyList;

class MeasuredFiguresTellerTest : public testing::Test {
 protected:
  MeasuredFigures tell() { return teller_.tell(sample_, false); }

  fakes::FakeSampleReader sample_;
  MeasuredFiguresTeller teller_;
};

TEST_F(MeasuredFiguresTellerTest, OfAnEmptySampleNothing) { EXPECT_EQ(tell(), MeasuredFigures()); }

TEST_F(MeasuredFiguresTellerTest, OfPowerWhatTheSampleHolds) {
  sample_.setPowerValues({{"combined_power", PropertyList(1200.0)},
                          {"cpu_energy", PropertyList(std::int64_t{1})},
                          {"gpu_energy", PropertyList(std::int64_t{0})}});
  MeasuredFigures expected;
  expected.pkgPower = true;
  expected.cpuPower = true;
  expected.gpuPower = true;
  EXPECT_EQ(tell(), expected);
}

TEST_F(MeasuredFiguresTellerTest, DramAndNeuralEngineByThemselves) {
  sample_.setPowerValues({{"dram_energy", PropertyList(1.0)}});
  EXPECT_TRUE(tell().dramPower);
  EXPECT_FALSE(tell().anePower);
  sample_.setPowerValues({{"ane_energy", PropertyList(1.0)}});
  EXPECT_TRUE(tell().anePower);
  EXPECT_FALSE(tell().dramPower);
}

TEST_F(MeasuredFiguresTellerTest, AValueThatIsNoNumberIsNoFigure) {
  sample_.setPowerValues({{"cpu_energy", PropertyList(std::string("12"))}});
  sample_.setGPUFrequency({{"freq_hz", PropertyList(std::string("444"))}});
  EXPECT_EQ(tell(), MeasuredFigures());
}

TEST_F(MeasuredFiguresTellerTest, TheGPUsFrequencyWhereTheSampleHoldsIt) {
  EXPECT_FALSE(tell().gpuFrequency);
  sample_.setGPUFrequency({{"freq_hz", PropertyList(0.0)}});
  EXPECT_TRUE(tell().gpuFrequency);
}

TEST_F(MeasuredFiguresTellerTest, AClusterThatRunsIsThere) {
  sample_.setClusterFrequencies({{"E-Cluster", 1100.0}, {"P-Cluster", 0.0}});
  EXPECT_TRUE(tell().cpuECoreFrequency);
  EXPECT_FALSE(tell().cpuPCoreFrequency);
}

TEST_F(MeasuredFiguresTellerTest, AClusterThatRestsIsThereWithItsProcessors) {
  sample_.setClusterFrequencies({{"E-Cluster", 0.0}, {"P-Cluster", 0.0}});
  sample_.setClusterCPUs({{"E-Cluster", {}}, {"P-Cluster", {4, 5}}});
  EXPECT_FALSE(tell().cpuECoreFrequency);
  EXPECT_TRUE(tell().cpuPCoreFrequency);
}

TEST_F(MeasuredFiguresTellerTest, TheKindsUtilizationOnceClustersWereNamed) {
  EXPECT_FALSE(tell().coreUtilization);
  sample_.setClusterCPUs({{"E-Cluster", {0}}, {"P-Cluster", {1}}});
  EXPECT_TRUE(tell().coreUtilization);
  sample_.setClusterCPUs({});
  EXPECT_TRUE(tell().coreUtilization);
}

TEST_F(MeasuredFiguresTellerTest, TheGPUsUtilizationAsTheModuleSays) {
  EXPECT_TRUE(teller_.tell(sample_, true).gpuUtilization);
}

}  // namespace
}  // namespace pallimo::serving
