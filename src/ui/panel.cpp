// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/panel.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "ui/fresh_id.h"

namespace pallimo::ui {

namespace {

using modules::MetricHistory;

constexpr double kTallPanel = 160;
constexpr double kLowPanel = 140;

/// Adds columns and series to a panel.
class PanelBuilder {
 public:
  PanelBuilder(Panel& panel, ports::RandomNumbers& random) : panel_(panel), random_(random) {}

  void column(double width, std::vector<PanelValue> values) {
    panel_.columns.push_back({std::move(values), width});
  }

  /// `display(value)` is the number that is written, `fraction(number)` its place on the axis.
  template <typename Display, typename Fraction>
  void series(std::string label, const MetricHistory::Snapshot& history, SeriesColor color,
              ValueFormat format, Display display, Fraction fraction) {
    const std::size_t count = std::min(history.newest.size(), kGraphLength);
    SeriesText text{std::move(label), format, {}};
    GraphData data{freshId(random_), {}, color};
    text.values.reserve(count);
    data.data.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      text.values.push_back(display(history.newest[i]));
      data.data.push_back(fraction(text.values.back()));
    }
    panel_.seriesTexts.push_back(std::move(text));
    panel_.graph.datas.push_back(std::move(data));
  }

  /// A series whose values are written as the model keeps them.
  template <typename Fraction>
  void series(std::string label, const MetricHistory::Snapshot& history, SeriesColor color,
              ValueFormat format, Fraction fraction) {
    series(
        std::move(label), history, color, format, [](double value) { return value; }, fraction);
  }

 private:
  Panel& panel_;
  ports::RandomNumbers& random_;
};

PanelValue figure(std::string label, ValueFormat format, double value, SeriesColor color) {
  return {std::move(label), "", formatValue(format, value), color};
}

PanelValue figure(std::string labelUp, std::string labelDown, ValueFormat format, double value,
                  SeriesColor color) {
  return {std::move(labelUp), std::move(labelDown), formatValue(format, value), color};
}

/// Degrees as the user wants to read them, and the axis in that unit.
struct TemperatureScale {
  bool isFahrenheit = false;

  double displayed(double celsius) const { return isFahrenheit ? celsius * 9 / 5 + 32 : celsius; }

  /// From the top to the bottom of the graph.
  std::array<int, 6> axis() const {
    if (isFahrenheit) return {250, 215, 180, 145, 110, 75};
    return {120, 100, 80, 60, 40, 20};
  }
};

}  // namespace

Panel powerPanel(const modules::ModuleModelPower::Snapshot& model, ports::RandomNumbers& random) {
  using enum SeriesColor;
  constexpr ValueFormat kFormat = ValueFormat::twoDecimals;
  Panel panel;
  panel.title = {"Power", "WATTS", "Power in Watts. Data from powermetrics"};
  panel.height = kTallPanel;
  PanelBuilder build(panel, random);
  build.column(65, {figure("PKG", kFormat, model.PKGEnergy, blue)});
  build.column(65, {figure("CPU", kFormat, model.CPUEnergy, cyan)});
  build.column(75, {figure("ANE", kFormat, model.ANEEnergy, orange)});
  build.column(65, {figure("GPU", kFormat, model.GPUEnergy, pink)});

  panel.graph.axisLabels.assign(model.axisLabels.begin(), model.axisLabels.end());
  // The maximum is 0 before the first sample, when there is nothing to divide either.
  const auto fraction = [&](double watts) { return watts / model.axisMaxValue; };
  build.series("CPU", model.historicCPU, cyan, kFormat, fraction);
  build.series("PKG", model.historicPKG, blue, kFormat, fraction);
  build.series("ANE", model.historicANE, orange, kFormat, fraction);
  build.series("GPU", model.historicGPU, pink, kFormat, fraction);
  return panel;
}

Panel frequencyPanel(const modules::ModuleModelFrequency::Snapshot& model,
                     const DisplaySettings& settings, ports::RandomNumbers& random) {
  using enum SeriesColor;
  constexpr ValueFormat kFormat = ValueFormat::twoDecimals;
  constexpr double kAxisMaximum = 5;  // GHz
  Panel panel;
  panel.title = {"Frequency", "GHZ", "Frequency in Gigahertz. Data from powermetrics"};
  panel.height = kTallPanel;
  PanelBuilder build(panel, random);
  build.column(80, {figure("E-CORE", kFormat, model.ECore, blue)});
  build.column(80, {figure("P-CORE", kFormat, model.PCore, cyan)});
  if (settings.gpuFrequency) build.column(65, {figure("GPU", kFormat, model.GPU, pink)});

  panel.graph.axisLabels = {"5.0", "4.0", "3.0", "2.0", "1.0", "0.0"};
  const auto fraction = [](double gigahertz) { return gigahertz / kAxisMaximum; };
  build.series("P-CORE", model.historicPCore, cyan, kFormat, fraction);
  build.series("E-CORE", model.historicECore, blue, kFormat, fraction);
  if (settings.gpuFrequency) build.series("GPU", model.historicGPU, pink, kFormat, fraction);
  return panel;
}

Panel temperaturePanel(const modules::ModuleModelTemperature::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random) {
  using enum SeriesColor;
  using enum ValueFormat;
  const TemperatureScale scale{settings.isFahrenheit};
  Panel panel;
  panel.title = {"Temperature", settings.isFahrenheit ? "℉" : "℃",
                 settings.isFahrenheit
                     ? "Temperature in Degrees Fahrenheit. Data from SMC/IOHIDService"
                     : "Temperature in Degrees Celcius. Data from SMC/IOHIDService"};
  panel.height = kLowPanel;
  PanelBuilder build(panel, random);
  const auto column = [&](double width, const char* up, const char* down, ValueFormat format,
                          double celsius, SeriesColor color) {
    build.column(width, {figure(up, down, format, scale.displayed(celsius), color)});
  };
  column(85, "CORE", "AVG", degrees, model.CPUAvg, cyan);
  column(65, "CORE", "MAX", whole, model.CPUMax, blue);
  column(65, "CORE", "MIN", whole, model.CPUMin, purple);
  column(80, "GPU", "AVG", degrees, model.GPUAvg, pink);

  const auto axis = scale.axis();
  for (const int label : axis) panel.graph.axisLabels.push_back(std::to_string(label));
  const auto series = [&](const char* up, const char* down, const MetricHistory::Snapshot& history,
                          SeriesColor color, ValueFormat format) {
    build.series(
        std::string(up) + " " + down, history, color, format,
        [&](double celsius) { return scale.displayed(celsius); },
        [&](double shown) { return (shown - axis.back()) / (axis.front() - axis.back()); });
  };
  series("CORE", "MIN", model.historicCPUMin, purple, whole);
  series("CORE", "MAX", model.historicCPUMax, blue, whole);
  series("CORE", "AVG", model.historicCPUAvg, cyan, degrees);
  series("GPU", "AVG", model.historicGPUAvg, pink, degrees);
  return panel;
}

Panel utilizationPanel(const modules::ModuleModelUtilization::Snapshot& model,
                       const DisplaySettings& settings, ports::RandomNumbers& random) {
  using enum SeriesColor;
  constexpr ValueFormat kFormat = ValueFormat::percent;
  Panel panel;
  panel.title = {"Utilization", "%", "Utilization as percentage. Data from sysctl"};
  panel.height = kLowPanel;
  PanelBuilder build(panel, random);
  if (settings.showEPUtilization) {
    build.column(90, {figure("E-CORE", kFormat, model.eutilization, blue),
                      figure("P-CORE", kFormat, model.putilization, cyan)});
  } else {
    build.column(75, {figure("CORE", kFormat, model.utilization, cyan)});
  }
  if (settings.gpuUtilization) {
    build.column(70, {figure("GPU", kFormat, model.utilizationGPU, pink)});
  }

  panel.graph.axisLabels = {"100", "80", "60", "40", "20", "0"};
  const auto fraction = [](double value) { return value; };
  if (settings.gpuUtilization) build.series("GPU", model.historicGPU, pink, kFormat, fraction);
  if (settings.showEPUtilization) {
    build.series("E-CORE", model.historice, blue, kFormat, fraction);
    build.series("P-CORE", model.historicp, cyan, kFormat, fraction);
  } else {
    build.series("CORE", model.historic, blue, kFormat, fraction);
  }
  return panel;
}

}  // namespace pallimo::ui
