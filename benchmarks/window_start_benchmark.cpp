// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the start's last part costs: the app's window with everything that it is joined to, made,
// shown and painted for the first time, on a screen that nobody sees. Qt is warm, since it has read
// its fonts; of a process's first window scripts/measure_window tells.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <iostream>

#include "app/models/general_model.h"
#include "app/window/system_chrome.h"
#include "app/window/window_run.h"
#include "benchmarks/simulated_platform.h"

namespace pallimo::benchmarks {
namespace {

class PaintCounter final : public QObject {
 public:
  int paints = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

void showInstallScreen(benchmark::State& state) {
  SimulatedPlatform simulated;
  const app::Platform platform = simulated.platform();
  app::GeneralModel general(platform);
  for (auto _ : state) {
    app::WindowRun run(platform, general, app::systemChrome());
    run.window().show();
    simulated.mainQueue().run();
    QCoreApplication::processEvents();
  }
}
BENCHMARK(showInstallScreen)->Unit(benchmark::kMillisecond);

bool isWindowPainted() {
  SimulatedPlatform simulated;
  const app::Platform platform = simulated.platform();
  app::GeneralModel general(platform);
  app::WindowRun run(platform, general, app::systemChrome());
  PaintCounter counter;
  run.window().installEventFilter(&counter);
  run.window().show();
  simulated.mainQueue().run();
  QCoreApplication::processEvents();
  return counter.paints > 0;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::isWindowPainted()) {
    std::cerr << "the window is not painted\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
