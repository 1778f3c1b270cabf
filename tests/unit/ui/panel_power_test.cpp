// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <set>

#include "modules/power_axis.h"
#include "ui/panel.h"
#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

using modules::ModuleModelPower;

constexpr std::array<std::string_view, 5> kAxis20 = {"20", "15", "10", "5", "0"};

/// Two samples on an axis up to 20 W.
ModuleModelPower::Snapshot twoSamples() {
  ModuleModelPower::Snapshot model;
  model.PKGEnergy = 14.314;
  model.CPUEnergy = 7.866;
  model.ANEEnergy = 0.02;
  model.GPUEnergy = 1.625;
  model.DRAMEnergy = 3.5;
  model.axisLabels = kAxis20;
  model.axisMaxValue = 20;
  model.historicPKG = history({16, 12});
  model.historicCPU = history({8, 6});
  model.historicANE = history({0.02, 0});
  model.historicGPU = history({2, 1});
  model.historicDRAM = history({19, 18});
  return model;
}

Panel powerPanelOf(const ModuleModelPower::Snapshot& model) {
  CountingRandom random;
  return powerPanel(model, random);
}

TEST(PowerPanel, HasItsTitleUnitAndHelp) {
  EXPECT_EQ(powerPanelOf(twoSamples()).title,
            (ModuleTitle{"Power", "WATTS", "Power in Watts. Data from powermetrics"}));
}

TEST(PowerPanel, Is160PointsHigh) { EXPECT_EQ(powerPanelOf(twoSamples()).height, 160); }

TEST(PowerPanel, ShowsPackageCpuNeuralEngineAndGpuButNotMemory) {
  EXPECT_EQ(columnsOf(powerPanelOf(twoSamples())),
            (Drawing{"65: PKG 14.31 blue", "65: CPU 7.87 cyan", "75: ANE 0.02 orange",
                     "65: GPU 1.62 pink"}));
}

TEST(PowerPanel, DrawsCpuPackageNeuralEngineThenGpuAsPartsOfTheAxis) {
  EXPECT_EQ(
      seriesOf(powerPanelOf(twoSamples())),
      (Drawing{"cyan 0.400 0.300", "blue 0.800 0.600", "orange 0.001 0.000", "pink 0.100 0.050"}));
}

TEST(PowerPanel, SaysOfEachSampleWhatItsFigureSays) {
  EXPECT_EQ(seriesTextsOf(powerPanelOf(twoSamples())),
            (Drawing{"CPU 8.00 6.00", "PKG 16.00 12.00", "ANE 0.02 0.00", "GPU 2.00 1.00"}));
}

TEST(PowerPanel, TheAxisIsTheModels) {
  EXPECT_EQ(powerPanelOf(twoSamples()).graph.axisLabels,
            (std::vector<std::string>{"20", "15", "10", "5", "0"}));
}

TEST(PowerPanel, BeforeTheFirstSampleNothingIsDrawnOnTheFirstAxis) {
  const modules::PowerAxis axis = modules::initialPowerAxis();
  ModuleModelPower::Snapshot model;
  model.axisLabels = axis.labels;
  model.axisMaxValue = axis.maxValue;
  const Panel panel = powerPanelOf(model);
  EXPECT_EQ(seriesOf(panel), (Drawing{"cyan", "blue", "orange", "pink"}));
  EXPECT_EQ(panel.graph.axisLabels,
            (std::vector<std::string>{"30", "25", "20", "15", "10", "5", "0"}));
  EXPECT_EQ(columnsOf(panel), (Drawing{"65: PKG 0.00 blue", "65: CPU 0.00 cyan",
                                       "75: ANE 0.00 orange", "65: GPU 0.00 pink"}));
}

TEST(PowerPanel, APowerAboveTheAxisLiesAboveTheBox) {
  auto model = twoSamples();
  model.historicPKG = history({30});
  EXPECT_EQ(powerPanelOf(model).graph.datas[1].data, std::vector{1.5});
}

TEST(PowerPanel, EverySeriesHasAnIdOfItsOwnAtEveryBuilding) {
  CountingRandom random;
  std::set<std::string> ids;
  for (int i = 0; i < 2; ++i) {
    for (const std::string& id : idsOf(powerPanel(twoSamples(), random))) {
      EXPECT_EQ(id.size(), 36u);
      ids.insert(id);
    }
  }
  EXPECT_EQ(ids.size(), 8u);
}

TEST(PowerPanel, TakesNoMoreThan350ValuesOfAnEndlessHistory) {
  auto model = twoSamples();
  modules::MetricHistory endless(modules::MetricHistory::kUnbounded);
  for (int i = 1; i <= 1000; ++i) endless.insert(i);
  model.historicANE = endless.snapshot();
  const Panel panel = powerPanelOf(model);
  ASSERT_EQ(panel.graph.datas[2].data.size(), 350u);
  EXPECT_EQ(panel.graph.datas[2].data.front(), 1000.0 / 20);
  EXPECT_EQ(panel.graph.datas[2].data.back(), 651.0 / 20);
  EXPECT_EQ(panel.seriesTexts[2].values.size(), 350u);
}

TEST(PowerPanel, WhatIsNotANumberIsShownAsSuch) {
  auto model = twoSamples();
  model.PKGEnergy = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(columnsOf(powerPanelOf(model))[0], "65: PKG nan blue");
}

}  // namespace
}  // namespace pallimo::ui
