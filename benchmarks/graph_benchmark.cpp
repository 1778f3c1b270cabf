// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the window's figures and graphs cost to paint, in CPU time, at once and twice the density:
// everything from nothing, and what one new sample changes in the four graphs.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstddef>

#include "benchmarks/painted_window.h"
#include "ui/widgets/panels/graph_canvas.h"

namespace {

using namespace pallimo::benchmarks;
using namespace pallimo::ui;
using namespace pallimo::ui::widgets;

void paintWindowFromNothing(benchmark::State& state) {
  PaintedWindow window(static_cast<int>(state.range(0)));
  for (auto _ : state) window.paintFromNothing();
}

void paintOneSample(benchmark::State& state) {
  PaintedGraphs graphs(static_cast<int>(state.range(0)));
  std::size_t moment = 0;
  for (auto _ : state) {
    // Before the first moment comes the last one: that redraw is not what is asked.
    if (moment == 0) state.PauseTiming();
    graphs.paint(moment);
    if (moment == 0) state.ResumeTiming();
    moment = (moment + 1) % kMoments;
  }
}

void paintGraphsFromNothing(benchmark::State& state) {
  const int ratio = static_cast<int>(state.range(0));
  for (auto _ : state) {
    for (const Panel& panel : moments().front()) {
      GraphCanvas canvas;
      benchmark::DoNotOptimize(canvas.draw(panel.graph, boxOf(panel), ratio, ColorScheme::dark));
    }
  }
}

BENCHMARK(paintWindowFromNothing)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(paintGraphsFromNothing)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(paintOneSample)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
