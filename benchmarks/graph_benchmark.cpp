// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the window's figures and graphs cost to paint, in CPU time, at once and twice the density:
// everything from nothing, and what one new sample changes in the four graphs.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <array>
#include <memory>
#include <vector>

#include "ui/widgets/graph_canvas.h"
#include "ui/widgets/panel_widget.h"
#include "unit/ui/widgets/example_panels.h"

namespace {

using namespace pallimo::ui;
using namespace pallimo::ui::widgets;

constexpr int kMoments = 64;

/// Thirteen series of 350 values in four graphs, at moments that follow each other.
const std::vector<std::vector<Panel>>& moments() {
  static const auto all = [] {
    std::vector<std::vector<Panel>> panels;
    for (int moment = 0; moment < kMoments; ++moment) panels.push_back(examplePanels(moment));
    return panels;
  }();
  return all;
}

QSize boxOf(const Panel& panel) { return {316, panel.height > 150 ? 92 : 72}; }

/// A change of colours leaves nothing of what was painted before.
void paintWindowFromNothing(benchmark::State& state) {
  const int ratio = static_cast<int>(state.range(0));
  QImage screen(QSize(380, 700) * ratio, QImage::Format_RGB32);
  screen.setDevicePixelRatio(ratio);
  std::vector<std::unique_ptr<PanelWidget>> panels;
  for (const Panel& panel : moments().front()) {
    panels.push_back(std::make_unique<PanelWidget>(panel));
    panels.back()->resize(panels.back()->sizeHint());
  }
  bool isDark = false;
  for (auto _ : state) {
    isDark = !isDark;
    int y = 64;
    for (const auto& panel : panels) {
      panel->setColorScheme(isDark ? ColorScheme::dark : ColorScheme::light);
      panel->render(&screen, QPoint(10, y));
      y += panel->height() + 8;
    }
  }
}

/// With the copy of each graph's box to the window's image.
void paintOneSample(benchmark::State& state) {
  const int ratio = static_cast<int>(state.range(0));
  QImage screen(QSize(380, 700) * ratio, QImage::Format_RGB32);
  std::array<GraphCanvas, 4> canvases;
  std::size_t moment = 0;
  for (auto _ : state) {
    // Before the first moment comes the last one: that redraw is not what is asked.
    if (moment == 0) state.PauseTiming();
    for (std::size_t i = 0; i < canvases.size(); ++i) {
      const Panel& panel = moments()[moment][i];
      canvases[i].draw(panel.graph, boxOf(panel), ratio, ColorScheme::dark);
      QPainter painter(&screen);
      painter.drawImage(QPoint(23, 100 + 150 * static_cast<int>(i)) * ratio, canvases[i].image());
    }
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
