// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/copy_values.h"

#include <gtest/gtest.h>

#include <array>

#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

TEST(CopyValues, IsALineOfFourColumnsForEachFigure) {
  CountingRandom random;
  modules::ModuleModelPower::Snapshot power;
  power.PKGEnergy = 14.314;
  power.CPUEnergy = 7.866;
  EXPECT_EQ(copyValuesText(std::array{powerPanel(power, random)}),
            "Power\tPKG\t14.31\tWATTS\n"
            "Power\tCPU\t7.87\tWATTS\n"
            "Power\tANE\t0.00\tWATTS\n"
            "Power\tGPU\t0.00\tWATTS\n");
}

TEST(CopyValues, ALabelOfTwoLinesBecomesOne) {
  CountingRandom random;
  modules::ModuleModelTemperature::Snapshot temperature;
  temperature.CPUAvg = 100;
  EXPECT_EQ(copyValuesText(std::array{temperaturePanel(temperature, {}, random)}),
            "Temperature\tCORE AVG\t100.0\t℃\n"
            "Temperature\tCORE MAX\t0\t℃\n"
            "Temperature\tCORE MIN\t0\t℃\n"
            "Temperature\tGPU AVG\t0.00\t℃\n");
}

TEST(CopyValues, TwoValuesInOneColumnAreTwoLines) {
  CountingRandom random;
  modules::ModuleModelUtilization::Snapshot utilization;
  utilization.eutilization = 0.5;
  utilization.putilization = 1;
  EXPECT_EQ(copyValuesText(
                std::array{utilizationPanel(utilization, {.showEPUtilization = true}, random)}),
            "Utilization\tE-CORE\t50.00\t%\n"
            "Utilization\tP-CORE\t100.0\t%\n");
}

TEST(CopyValues, FollowsTheOrderOfTheWindow) {
  CountingRandom random;
  EXPECT_EQ(
      copyValuesText(std::array{frequencyPanel({}, {}, random), utilizationPanel({}, {}, random)}),
      "Frequency\tE-CORE\t0.00\tGHZ\n"
      "Frequency\tP-CORE\t0.00\tGHZ\n"
      "Utilization\tCORE\t0.00\t%\n");
}

TEST(CopyValues, WithoutPanelsThereIsNothing) { EXPECT_EQ(copyValuesText({}), ""); }

}  // namespace
}  // namespace pallimo::ui
