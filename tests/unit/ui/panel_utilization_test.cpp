// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <limits>

#include "ui/panel.h"
#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

modules::ModuleModelUtilization::Snapshot twoSamples() {
  modules::ModuleModelUtilization::Snapshot model;
  model.utilization = 0.24812;
  model.eutilization = 0.5;
  model.putilization = 1.0;
  model.utilizationGPU = 0.124;
  model.historic = history({0.25, 0.125});
  model.historice = history({0.5, 0.75});
  model.historicp = history({1, 0});
  model.historicGPU = history({0.1, 0.2});
  return model;
}

Panel panelWith(DisplaySettings settings,
                const modules::ModuleModelUtilization::Snapshot& model = twoSamples()) {
  CountingRandom random;
  return utilizationPanel(model, settings, random);
}

const DisplaySettings kPlain = {};
const DisplaySettings kClusters = {.showEPUtilization = true};
const DisplaySettings kGpu = {.gpuUtilization = true};
const DisplaySettings kClustersAndGpu = {.gpuUtilization = true, .showEPUtilization = true};

TEST(UtilizationPanel, HasItsTitleUnitAndHelp) {
  EXPECT_EQ(panelWith(kPlain).title,
            (ModuleTitle{"Utilization", "%", "Utilization as percentage. Data from sysctl"}));
}

TEST(UtilizationPanel, Is140PointsHigh) { EXPECT_EQ(panelWith(kPlain).height, 140); }

TEST(UtilizationPanel, ShowsTheWholeCpuInOneFigure) {
  EXPECT_EQ(columnsOf(panelWith(kPlain)), (Drawing{"75: CORE 24.81 cyan"}));
}

TEST(UtilizationPanel, ShowsTheKindsOfCoresInItsPlaceInOneColumn) {
  EXPECT_EQ(columnsOf(panelWith(kClusters)),
            (Drawing{"90: E-CORE 50.00 blue + P-CORE 100.0 cyan"}));
}

TEST(UtilizationPanel, ShowsTheGpuOnlyOnRequest) {
  EXPECT_EQ(columnsOf(panelWith(kGpu)), (Drawing{"75: CORE 24.81 cyan", "70: GPU 12.40 pink"}));
  EXPECT_EQ(columnsOf(panelWith(kClustersAndGpu)),
            (Drawing{"90: E-CORE 50.00 blue + P-CORE 100.0 cyan", "70: GPU 12.40 pink"}));
}

TEST(UtilizationPanel, TheLineOfTheWholeCpuIsBlueAlthoughItsFigureIsCyan) {
  EXPECT_EQ(seriesOf(panelWith(kPlain)), (Drawing{"blue 0.250 0.125"}));
}

TEST(UtilizationPanel, DrawsTheKindsOfCoresInPlaceOfTheWholeCpu) {
  EXPECT_EQ(seriesOf(panelWith(kClusters)), (Drawing{"blue 0.500 0.750", "cyan 1.000 0.000"}));
}

TEST(UtilizationPanel, DrawsTheGpuBelowAllOthers) {
  EXPECT_EQ(seriesOf(panelWith(kGpu)), (Drawing{"pink 0.100 0.200", "blue 0.250 0.125"}));
  EXPECT_EQ(seriesOf(panelWith(kClustersAndGpu)),
            (Drawing{"pink 0.100 0.200", "blue 0.500 0.750", "cyan 1.000 0.000"}));
}

TEST(UtilizationPanel, SaysOfEachSampleWhatItsFigureSays) {
  EXPECT_EQ(seriesTextsOf(panelWith(kGpu)), (Drawing{"GPU 10.00 20.00", "CORE 25.00 12.50"}));
  EXPECT_EQ(seriesTextsOf(panelWith(kClusters)),
            (Drawing{"E-CORE 50.00 75.00", "P-CORE 100.0 0.00"}));
}

TEST(UtilizationPanel, AFractionBelowOneKeepsTwoDecimalsEvenWhenItRoundsToAHundred) {
  auto model = twoSamples();
  model.utilization = 0.99999;
  EXPECT_EQ(columnsOf(panelWith(kPlain, model)).front(), "75: CORE 100.00 cyan");
  model.utilization = 1;
  EXPECT_EQ(columnsOf(panelWith(kPlain, model)).front(), "75: CORE 100.0 cyan");
}

TEST(UtilizationPanel, WhatIsNotANumberIsShownAsSuch) {
  auto model = twoSamples();
  model.putilization = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(columnsOf(panelWith(kClusters, model)).front(),
            "90: E-CORE 50.00 blue + P-CORE nan cyan");
}

TEST(UtilizationPanel, TheAxisIsFixed) {
  EXPECT_EQ(panelWith(kPlain).graph.axisLabels,
            (std::vector<std::string>{"100", "80", "60", "40", "20", "0"}));
}

TEST(UtilizationPanel, NoOtherSettingChangesIt) {
  const Panel plain = panelWith(kPlain);
  EXPECT_EQ(panelWith({.gpuFrequency = true}), plain);
  EXPECT_EQ(panelWith({.isFahrenheit = true}), plain);
}

}  // namespace
}  // namespace pallimo::ui
