// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <limits>

#include "ui/graph_geometry.h"
#include "ui/panel.h"
#include "unit/ui/panel_drawing.h"

namespace pallimo::ui {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

modules::ModuleModelTemperature::Snapshot twoSamples() {
  modules::ModuleModelTemperature::Snapshot model;
  model.CPUAvg = 52.374;
  model.CPUMax = 58.6;
  model.CPUMin = 46.4;
  model.GPUAvg = 47.121;
  model.historicCPUAvg = history({70, 45});
  model.historicCPUMax = history({120, 70});
  model.historicCPUMin = history({20, 10});
  model.historicGPUAvg = history({95, 32.5});
  return model;
}

Panel panelOf(const modules::ModuleModelTemperature::Snapshot& model, DisplaySettings settings) {
  CountingRandom random;
  return temperaturePanel(model, settings, random);
}

Panel celsius(const modules::ModuleModelTemperature::Snapshot& model = twoSamples()) {
  return panelOf(model, {});
}
Panel fahrenheit(const modules::ModuleModelTemperature::Snapshot& model = twoSamples()) {
  return panelOf(model, {.isFahrenheit = true});
}

/// The column "CORE/AVG" of a panel whose CPU is that warm on average.
std::string averageOf(double degreesCelsius, DisplaySettings settings = {}) {
  modules::ModuleModelTemperature::Snapshot model;
  model.CPUAvg = degreesCelsius;
  return columnsOf(panelOf(model, settings)).front();
}

TEST(TemperaturePanel, TitleAndHelpNameTheUnit) {
  EXPECT_EQ(celsius().title,
            (ModuleTitle{"Temperature", "℃",
                         "Temperature in Degrees Celcius. Data from SMC/IOHIDService"}));
  EXPECT_EQ(fahrenheit().title,
            (ModuleTitle{"Temperature", "℉",
                         "Temperature in Degrees Fahrenheit. Data from SMC/IOHIDService"}));
}

TEST(TemperaturePanel, Is140PointsHigh) {
  EXPECT_EQ(celsius().height, 140);
  EXPECT_EQ(fahrenheit().height, 140);
}

TEST(TemperaturePanel, ShowsAverageMaximumMinimumAndTheGpu) {
  EXPECT_EQ(columnsOf(celsius()), (Drawing{"85: CORE/AVG 52.37 cyan", "65: CORE/MAX 59 blue",
                                           "65: CORE/MIN 46 purple", "80: GPU/AVG 47.12 pink"}));
}

TEST(TemperaturePanel, ConvertsTheValuesToFahrenheit) {
  EXPECT_EQ(columnsOf(fahrenheit()),
            (Drawing{"85: CORE/AVG 126.3 cyan", "65: CORE/MAX 137 blue", "65: CORE/MIN 116 purple",
                     "80: GPU/AVG 116.8 pink"}));
}

TEST(TemperaturePanel, AveragesLoseADecimalAtAHundredDegreesOfTheDisplayUnit) {
  EXPECT_EQ(averageOf(99.996), "85: CORE/AVG 100.00 cyan");
  EXPECT_EQ(averageOf(100.0), "85: CORE/AVG 100.0 cyan");
  EXPECT_EQ(averageOf(37.5, {.isFahrenheit = true}), "85: CORE/AVG 99.50 cyan");
  EXPECT_EQ(averageOf(40, {.isFahrenheit = true}), "85: CORE/AVG 104.0 cyan");
}

TEST(TemperaturePanel, DrawsFromTwentyToAHundredAndTwentyDegreesCelsius) {
  EXPECT_EQ(seriesOf(celsius()), (Drawing{"purple 0.000 -0.100", "blue 1.000 0.500",
                                          "cyan 0.500 0.250", "pink 0.750 0.125"}));
}

TEST(TemperaturePanel, DrawsFromSeventyFiveToTwoHundredAndFiftyDegreesFahrenheit) {
  // 68 and 50, 248 and 158, 158 and 113, 203 and 90.5 degrees.
  EXPECT_EQ(seriesOf(fahrenheit()), (Drawing{"purple -0.040 -0.143", "blue 0.989 0.474",
                                             "cyan 0.474 0.217", "pink 0.731 0.089"}));
}

TEST(TemperaturePanel, SaysOfEachSampleWhatItsFigureSays) {
  EXPECT_EQ(seriesTextsOf(celsius()), (Drawing{"CORE MIN 20 10", "CORE MAX 120 70",
                                               "CORE AVG 70.00 45.00", "GPU AVG 95.00 32.50"}));
  EXPECT_EQ(seriesTextsOf(fahrenheit()), (Drawing{"CORE MIN 68 50", "CORE MAX 248 158",
                                                  "CORE AVG 158.0 113.0", "GPU AVG 203.0 90.50"}));
}

TEST(TemperaturePanel, TheAxisFollowsTheUnit) {
  EXPECT_EQ(celsius().graph.axisLabels,
            (std::vector<std::string>{"120", "100", "80", "60", "40", "20"}));
  EXPECT_EQ(fahrenheit().graph.axisLabels,
            (std::vector<std::string>{"250", "215", "180", "145", "110", "75"}));
}

TEST(TemperaturePanel, AMachineWithoutSensorsSaysSo) {
  modules::ModuleModelTemperature::Snapshot model;
  model.CPUAvg = kNan;
  model.CPUMax = -1;
  model.CPUMin = -1;
  model.GPUAvg = kNan;
  EXPECT_EQ(columnsOf(celsius(model)), (Drawing{"85: CORE/AVG nan cyan", "65: CORE/MAX -1 blue",
                                                "65: CORE/MIN -1 purple", "80: GPU/AVG nan pink"}));
}

TEST(TemperaturePanel, AnAverageThatIsNotANumberIsAGapInItsLineAlone) {
  modules::ModuleModelTemperature::Snapshot model = twoSamples();
  model.historicCPUAvg = history({50, 51, kNan, std::numeric_limits<double>::infinity(), 52, 53});
  const GraphView graph = celsius(model).graph;
  const auto pieces = curve(graph.datas[2].data, 300, 72);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0].back().x, 299);
  EXPECT_EQ(pieces[1].front().x, 296);
  EXPECT_EQ(curve(graph.datas[1].data, 300, 72).size(), 1u);
}

TEST(TemperaturePanel, NoOtherSettingChangesIt) {
  const Panel plain = celsius();
  EXPECT_EQ(panelOf(twoSamples(), {.gpuFrequency = true}), plain);
  EXPECT_EQ(panelOf(twoSamples(), {.gpuUtilization = true}), plain);
  EXPECT_EQ(panelOf(twoSamples(), {.showEPUtilization = true}), plain);
}

}  // namespace
}  // namespace pallimo::ui
