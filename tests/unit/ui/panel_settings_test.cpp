// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>

#include "ui/panel.h"
#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

// What the settings make of the panels, all sixteen combinations of them.

struct Models {
  modules::ModuleModelPower::Snapshot power;
  modules::ModuleModelFrequency::Snapshot frequency;
  modules::ModuleModelTemperature::Snapshot temperature;
  modules::ModuleModelUtilization::Snapshot utilization;
};

Models oneSample() {
  Models models;
  models.power.axisMaxValue = 20;
  models.power.historicCPU = history({8});
  models.power.historicPKG = history({16});
  models.power.historicANE = history({1});
  models.power.historicGPU = history({2});
  models.frequency.historicECore = history({1.5});
  models.frequency.historicPCore = history({2.5});
  models.frequency.historicGPU = history({0.5});
  models.temperature.historicCPUAvg = history({70});
  models.temperature.historicCPUMax = history({120});
  models.temperature.historicCPUMin = history({20});
  models.temperature.historicGPUAvg = history({95});
  models.temperature.CPUAvg = 50;
  models.utilization.historic = history({0.25});
  models.utilization.historice = history({0.5});
  models.utilization.historicp = history({1});
  models.utilization.historicGPU = history({0.125});
  return models;
}

std::vector<Panel> panelsWith(const DisplaySettings& settings) {
  const Models models = oneSample();
  CountingRandom random;
  return {powerPanel(models.power, random), frequencyPanel(models.frequency, settings, random),
          temperaturePanel(models.temperature, settings, random),
          utilizationPanel(models.utilization, settings, random)};
}

class PanelSettings : public testing::TestWithParam<int> {
 protected:
  const DisplaySettings settings_{.gpuFrequency = (GetParam() & 1) != 0,
                                  .gpuUtilization = (GetParam() & 2) != 0,
                                  .showEPUtilization = (GetParam() & 4) != 0,
                                  .isFahrenheit = (GetParam() & 8) != 0};
  const std::vector<Panel> panels_ = panelsWith(settings_);
};

INSTANTIATE_TEST_SUITE_P(Combinations, PanelSettings, testing::Range(0, 16));

TEST_P(PanelSettings, LeavePowerAlone) {
  EXPECT_EQ(columnsOf(panels_[0]), (Drawing{"65: PKG 0.00 blue", "65: CPU 0.00 cyan",
                                            "75: ANE 0.00 orange", "65: GPU 0.00 pink"}));
  EXPECT_EQ(seriesOf(panels_[0]),
            (Drawing{"cyan 0.400", "blue 0.800", "orange 0.050", "pink 0.100"}));
}

TEST_P(PanelSettings, AddTheGpuToTheFrequencies) {
  Drawing columns = {"80: E-CORE 0.00 blue", "80: P-CORE 0.00 cyan"};
  Drawing series = {"cyan 0.500", "blue 0.300"};
  if (settings_.gpuFrequency) {
    columns.push_back("65: GPU 0.00 pink");
    series.push_back("pink 0.100");
  }
  EXPECT_EQ(columnsOf(panels_[1]), columns);
  EXPECT_EQ(seriesOf(panels_[1]), series);
}

TEST_P(PanelSettings, ChooseTheUnitOfTheTemperatures) {
  const bool isFahrenheit = settings_.isFahrenheit;
  EXPECT_EQ(panels_[2].title.labelRight, isFahrenheit ? "℉" : "℃");
  EXPECT_EQ(columnsOf(panels_[2]).front(),
            isFahrenheit ? "85: CORE/AVG 122.0 cyan" : "85: CORE/AVG 50.00 cyan");
  EXPECT_EQ(seriesOf(panels_[2]),
            isFahrenheit ? (Drawing{"purple -0.040", "blue 0.989", "cyan 0.474", "pink 0.731"})
                         : (Drawing{"purple 0.000", "blue 1.000", "cyan 0.500", "pink 0.750"}));
}

TEST_P(PanelSettings, ChooseTheCoresAndTheGpuOfTheUtilization) {
  const std::string core = "75: CORE 0.00 cyan";
  const std::string pair = "90: E-CORE 0.00 blue + P-CORE 0.00 cyan";
  const std::string gpu = "70: GPU 0.00 pink";
  using Choice = std::pair<bool, bool>;  // the GPU; the kinds of cores
  const std::map<Choice, Drawing> columns = {{{false, false}, {core}},
                                             {{false, true}, {pair}},
                                             {{true, false}, {core, gpu}},
                                             {{true, true}, {pair, gpu}}};
  const std::map<Choice, Drawing> series = {
      {{false, false}, {"blue 0.250"}},
      {{false, true}, {"blue 0.500", "cyan 1.000"}},
      {{true, false}, {"pink 0.125", "blue 0.250"}},
      {{true, true}, {"pink 0.125", "blue 0.500", "cyan 1.000"}}};
  const Choice choice(settings_.gpuUtilization, settings_.showEPUtilization);
  EXPECT_EQ(columnsOf(panels_[3]), columns.at(choice));
  EXPECT_EQ(seriesOf(panels_[3]), series.at(choice));
}

TEST(PanelIds, AreFreshInEveryPanelEachTimeItIsBuilt) {
  const Models models = oneSample();
  const DisplaySettings all{true, true, true, true};
  CountingRandom random;
  std::set<std::string> seen;
  std::size_t count = 0;
  for (int time = 0; time < 2; ++time) {
    for (const Panel& panel :
         {powerPanel(models.power, random), frequencyPanel(models.frequency, all, random),
          temperaturePanel(models.temperature, all, random),
          utilizationPanel(models.utilization, all, random)}) {
      for (const std::string& id : idsOf(panel)) {
        seen.insert(id);
        ++count;
      }
    }
  }
  EXPECT_EQ(count, 2u * (4 + 3 + 4 + 3));
  EXPECT_EQ(seen.size(), count);
}

}  // namespace
}  // namespace pallimo::ui
