// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What lies between the models and the painting, without a pixel: the panels that a window makes of
// its models' snapshots at every sample, and the lines of their graphs, thirteen series of 350
// values. A graph that has only moved makes those of its newest columns; one that is painted anew
// makes all of them.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <iostream>
#include <span>
#include <vector>

#include "fakes/scripted_random_numbers.h"
#include "ui/graph_geometry.h"
#include "ui/panel.h"
#include "unit/ui/widgets/panels/example_panels.h"

namespace pallimo::ui {
namespace {

using modules::MetricHistory;

constexpr double kGraphWidth = 316;
constexpr double kGraphHeight = 92;
constexpr std::size_t kNewColumns = 4;
constexpr std::size_t kSeries = 13;

MetricHistory::Snapshot history(double low, double high, double phase) {
  return {widgets::exampleHistory(low, high, phase), kGraphLength};
}

/// What four models hold after six minutes.
struct Snapshots {
  modules::ModuleModelPower::Snapshot power;
  modules::ModuleModelFrequency::Snapshot frequency;
  modules::ModuleModelTemperature::Snapshot temperature;
  modules::ModuleModelUtilization::Snapshot utilization;

  Snapshots() {
    const auto axis = modules::powerAxisFor(24);
    power.axisLabels = axis.labels;
    power.axisMaxValue = axis.maxValue;
    power.historicCPU = history(3, 13, 1);
    power.historicPKG = history(6, 24, 1);
    power.historicANE = history(0, 1, 2);
    power.historicGPU = history(0, 6, 3);
    frequency.historicPCore = history(1, 3.7, 2);
    frequency.historicECore = history(0.7, 2.5, 4);
    frequency.historicGPU = history(0.2, 1.4, 5);
    temperature.historicCPUMin = history(35, 60, 1);
    temperature.historicCPUMax = history(50, 70, 2);
    temperature.historicCPUAvg = history(45, 65, 3);
    temperature.historicGPUAvg = history(40, 55, 4);
    utilization.historic = history(0.05, 0.75, 2);
    utilization.historicGPU = history(0, 0.45, 6);
  }

  std::vector<Panel> panels(ports::RandomNumbers& random) const {
    DisplaySettings settings;
    settings.gpuFrequency = true;
    settings.gpuUtilization = true;
    return {powerPanel(power, random), frequencyPanel(frequency, settings, random),
            temperaturePanel(temperature, settings, random),
            utilizationPanel(utilization, settings, random)};
  }
};

void makePanels(benchmark::State& state) {
  const Snapshots snapshots;
  fakes::ScriptedRandomNumbers random;
  for (auto _ : state) benchmark::DoNotOptimize(snapshots.panels(random));
}
BENCHMARK(makePanels)->Unit(benchmark::kMicrosecond);

/// The newest values alone, or all of them.
void makeLines(benchmark::State& state) {
  const std::vector<Panel> panels = widgets::examplePanels();
  const auto values = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    for (const Panel& panel : panels) {
      benchmark::DoNotOptimize(outline(kGraphWidth, kGraphHeight));
      benchmark::DoNotOptimize(gridLines(panel.graph.axisLabels.size(), kGraphWidth, kGraphHeight));
      for (const GraphData& series : panel.graph.datas) {
        const std::span<const double> newest = std::span(series.data).first(values);
        benchmark::DoNotOptimize(curve(newest, kGraphWidth, kGraphHeight));
      }
    }
  }
}
BENCHMARK(makeLines)
    ->ArgName("values")
    ->Arg(kNewColumns)
    ->Arg(kGraphLength)
    ->Unit(benchmark::kMicrosecond);

bool areAllSeriesThere() {
  fakes::ScriptedRandomNumbers random;
  std::size_t full = 0;
  for (const Panel& panel : Snapshots().panels(random)) {
    for (const GraphData& series : panel.graph.datas) full += series.data.size() == kGraphLength;
  }
  return full == kSeries;
}

}  // namespace
}  // namespace pallimo::ui

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::ui::areAllSeriesThere()) {
    std::cerr << "the panels lack a series\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
