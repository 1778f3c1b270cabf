// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ui/main_title_content.h"
#include "ui/panel.h"
#include "ui/readout.h"

namespace pallimo::ui::widgets {

/// Values of a history of `length`, newest first, wandering between two fractions as a Mac at work
/// does; `moment` moves it on by one sample.
inline std::vector<double> exampleHistory(double low, double high, double phase, int moment = 0,
                                          std::size_t length = kGraphLength) {
  std::vector<double> values(length);
  for (std::size_t i = 0; i < length; ++i) {
    const double t = moment + 1000 - static_cast<double>(i) + phase * 7;
    const double slow = 0.5 + 0.4 * std::tanh(3 * std::sin(t / 25 + phase));
    const double fast = 0.08 * std::sin(t * 1.3) + 0.06 * std::sin(t * 2.1 + phase) +
                        0.05 * std::sin(t * 0.37) + 0.06 * std::sin(t * 7.7);
    values[i] = low + (high - low) * std::clamp(slow + fast, 0.0, 1.0);
  }
  return values;
}

inline Panel examplePowerPanel(int moment = 0) {
  Panel panel;
  panel.title = {"Power", "WATTS", "Power in Watts. Data from powermetrics"};
  panel.columns = {{{{"PKG", "", "14.31", SeriesColor::blue}}, 65},
                   {{{"CPU", "", "7.87", SeriesColor::cyan}}, 65},
                   {{{"ANE", "", "0.02", SeriesColor::orange}}, 75},
                   {{{"GPU", "", "1.62", SeriesColor::pink}}, 65}};
  panel.graph = {{"30", "25", "20", "15", "10", "5", "0"},
                 {{"", exampleHistory(0.1, 0.45, 1, moment), SeriesColor::cyan},
                  {"", exampleHistory(0.2, 0.8, 1, moment), SeriesColor::blue},
                  {"", std::vector<double>(kGraphLength, 0.0), SeriesColor::orange},
                  {"", exampleHistory(0, 0.2, 3, moment), SeriesColor::pink}}};
  panel.height = 160;
  return panel;
}

inline Panel exampleFrequencyPanel(int moment = 0) {
  Panel panel;
  panel.title = {"Frequency", "GHZ", "Frequency in Gigahertz. Data from powermetrics"};
  panel.columns = {{{{"E-CORE", "", "1.42", SeriesColor::blue}}, 80},
                   {{{"P-CORE", "", "2.31", SeriesColor::cyan}}, 80},
                   {{{"GPU", "", "0.61", SeriesColor::pink}}, 65}};
  panel.graph = {{"5.0", "4.0", "3.0", "2.0", "1.0", "0.0"},
                 {{"", exampleHistory(0.2, 0.75, 2, moment), SeriesColor::cyan},
                  {"", exampleHistory(0.15, 0.5, 4, moment), SeriesColor::blue},
                  {"", exampleHistory(0.05, 0.3, 5, moment), SeriesColor::pink}}};
  panel.height = 160;
  return panel;
}

inline Panel exampleTemperaturePanel(int moment = 0) {
  Panel panel;
  panel.title = {"Temperature", "℃", "Temperature in Degrees Celcius. Data from SMC/IOHIDService"};
  panel.columns = {{{{"CORE", "AVG", "52.37", SeriesColor::cyan}}, 85},
                   {{{"CORE", "MAX", "59", SeriesColor::blue}}, 65},
                   {{{"CORE", "MIN", "46", SeriesColor::purple}}, 65},
                   {{{"GPU", "AVG", "47.12", SeriesColor::pink}}, 80}};
  panel.graph = {{"120", "100", "80", "60", "40", "20"},
                 {{"", exampleHistory(0.15, 0.4, 1, moment), SeriesColor::purple},
                  {"", exampleHistory(0.3, 0.5, 2, moment), SeriesColor::blue},
                  {"", exampleHistory(0.25, 0.45, 3, moment), SeriesColor::cyan},
                  {"", exampleHistory(0.2, 0.35, 4, moment), SeriesColor::pink}}};
  panel.height = 140;
  return panel;
}

inline Panel exampleUtilizationPanel(int moment = 0) {
  Panel panel;
  panel.title = {"Utilization", "%", "Utilization as percentage. Data from sysctl"};
  panel.columns = {{{{"CORE", "", "24.81", SeriesColor::cyan}}, 75},
                   {{{"GPU", "", "12.40", SeriesColor::pink}}, 70}};
  panel.graph = {{"100", "80", "60", "40", "20", "0"},
                 {{"", exampleHistory(0, 0.45, 6, moment), SeriesColor::pink},
                  {"", exampleHistory(0.05, 0.75, 2, moment), SeriesColor::blue}}};
  panel.height = 140;
  return panel;
}

/// The E-cores and P-cores in place of the whole CPU: the pair that shares a column.
inline Panel examplePairPanel(int moment = 0) {
  Panel panel = exampleUtilizationPanel(moment);
  panel.columns[0] = {
      {{"E-CORE", "", "50.00", SeriesColor::blue}, {"P-CORE", "", "100.0", SeriesColor::cyan}}, 90};
  return panel;
}

/// The panels with the longest figures and labels that there are.
inline std::vector<Panel> widestPanels() {
  std::vector<Panel> panels = {examplePowerPanel(), exampleFrequencyPanel(),
                               exampleTemperaturePanel(), examplePairPanel()};
  for (ValueColumn& column : panels[0].columns) column.values[0].value = "1234.56";
  panels[0].graph.axisLabels = {"800", "640", "480", "320", "160", "0"};
  panels[1].columns[0].values[0].value = "nan";
  panels[1].columns[1].values[0].value = "-1";
  panels[1].columns[2].values[0].value = "10.00";
  panels[2].columns[0].values[0].value = "249.98";
  panels[2].columns[1].values[0].value = "1000";
  panels[2].columns[2].values[0].value = "-273";
  panels[2].columns[3].values[0].value = "1000.0";
  panels[3].columns[0].values[0].value = "100.00";
  panels[3].columns[1].values[0].value = "100.00";
  return panels;
}

inline std::vector<Panel> examplePanels(int moment = 0) {
  return {examplePowerPanel(moment), exampleFrequencyPanel(moment), exampleTemperaturePanel(moment),
          exampleUtilizationPanel(moment)};
}

/// A panel's figures one after the other, as if they were of the sample at `x`.
inline std::optional<Readout> exampleReadout(double x, double, const Panel& panel) {
  Readout readout;
  readout.x = std::round(x);
  readout.age = "3 min 20 s ago";
  for (const ValueColumn& column : panel.columns) {
    for (const PanelValue& value : column.values) {
      const std::string gap = value.labelDown.empty() ? "" : " ";
      readout.entries.push_back({value.labelUp + gap + value.labelDown, value.value, value.color});
    }
  }
  return readout;
}

inline MainTitleContent exampleTitle() {
  MainTitleContent content;
  content[0] = {{"Apple M2 Pro", FontRole::title2Bold},
                {"(4 E-Cores + 8 P-Cores)", FontRole::title3Medium}};
  content[1] = {{"Apple M2 Pro", FontRole::title3Bold},
                {"(19 GPU-Cores)", FontRole::headlineMedium}};
  return content;
}

/// The longest name that a Mac's chip has, with the most cores.
inline MainTitleContent longestTitle() {
  MainTitleContent content;
  content[0] = {{"Apple M1 Ultra", FontRole::title2Bold},
                {"(16 E-Cores + 32 P-Cores)", FontRole::title3Medium}};
  content[1] = {{"error in CPU type", FontRole::title3Bold},
                {"(-1 GPU-Cores)", FontRole::headlineMedium}};
  return content;
}

}  // namespace pallimo::ui::widgets
