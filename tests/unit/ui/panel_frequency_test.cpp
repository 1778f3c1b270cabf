// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include "ui/panel.h"
#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

modules::ModuleModelFrequency::Snapshot twoSamples() {
  modules::ModuleModelFrequency::Snapshot model;
  model.ECore = 1.424;
  model.PCore = 2.308;
  model.GPU = 0.61;
  model.historicECore = history({1.5, 1});
  model.historicPCore = history({2.5, 5});
  model.historicGPU = history({0.5, 0.25});
  return model;
}

Panel panelWith(DisplaySettings settings) {
  CountingRandom random;
  return frequencyPanel(twoSamples(), settings, random);
}

const DisplaySettings kWithoutGpu = {};
const DisplaySettings kWithGpu = {.gpuFrequency = true};

TEST(FrequencyPanel, HasItsTitleUnitAndHelp) {
  EXPECT_EQ(panelWith(kWithoutGpu).title,
            (ModuleTitle{"Frequency", "GHZ", "Frequency in Gigahertz. Data from powermetrics"}));
}

TEST(FrequencyPanel, Is160PointsHigh) { EXPECT_EQ(panelWith(kWithoutGpu).height, 160); }

TEST(FrequencyPanel, ShowsBothKindsOfCores) {
  EXPECT_EQ(columnsOf(panelWith(kWithoutGpu)),
            (Drawing{"80: E-CORE 1.42 blue", "80: P-CORE 2.31 cyan"}));
}

TEST(FrequencyPanel, ShowsTheGpuOnlyOnRequest) {
  EXPECT_EQ(columnsOf(panelWith(kWithGpu)),
            (Drawing{"80: E-CORE 1.42 blue", "80: P-CORE 2.31 cyan", "65: GPU 0.61 pink"}));
}

TEST(FrequencyPanel, DrawsPerformanceCoresThenEfficiencyCoresAsPartsOf5Gigahertz) {
  EXPECT_EQ(seriesOf(panelWith(kWithoutGpu)), (Drawing{"cyan 0.500 1.000", "blue 0.300 0.200"}));
}

TEST(FrequencyPanel, DrawsTheGpuLastAndOnlyOnRequest) {
  EXPECT_EQ(seriesOf(panelWith(kWithGpu)),
            (Drawing{"cyan 0.500 1.000", "blue 0.300 0.200", "pink 0.100 0.050"}));
}

TEST(FrequencyPanel, SaysOfEachSampleWhatItsFigureSays) {
  EXPECT_EQ(seriesTextsOf(panelWith(kWithGpu)),
            (Drawing{"P-CORE 2.50 5.00", "E-CORE 1.50 1.00", "GPU 0.50 0.25"}));
  EXPECT_EQ(seriesTextsOf(panelWith(kWithoutGpu)),
            (Drawing{"P-CORE 2.50 5.00", "E-CORE 1.50 1.00"}));
}

TEST(FrequencyPanel, TheAxisIsFixed) {
  EXPECT_EQ(panelWith(kWithoutGpu).graph.axisLabels,
            (std::vector<std::string>{"5.0", "4.0", "3.0", "2.0", "1.0", "0.0"}));
}

TEST(FrequencyPanel, NoOtherSettingChangesIt) {
  const Panel plain = panelWith(kWithoutGpu);
  EXPECT_EQ(panelWith({.gpuUtilization = true}), plain);
  EXPECT_EQ(panelWith({.showEPUtilization = true}), plain);
  EXPECT_EQ(panelWith({.isFahrenheit = true}), plain);
}

}  // namespace
}  // namespace pallimo::ui
