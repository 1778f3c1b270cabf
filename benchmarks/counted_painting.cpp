// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the window paints: one sample in the four graphs, everything from nothing, and one sample
// as the shown window takes it, figures included.

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/counted_work.h"
#include "benchmarks/painted_window.h"
#include "benchmarks/shown_panels.h"

namespace pallimo::benchmarks {

namespace {

void countGraphs(const char* name, int ratio) {
  PaintedGraphs graphs(ratio);
  std::size_t moment = 0;
  count({name}, [&] { graphs.paint(moment++); });
}

void countWindow(const char* name, int ratio) {
  PaintedWindow window(ratio);
  count({name, 2}, [&] { window.paintFromNothing(); });
}

void countShownSample() {
  ShownPanels panels;
  count(
      {"sample_shown"}, [&] { panels.prepare(); }, [&] { panels.show(); });
  if (panels.havePainted()) return;
  std::fputs("the shown window did not paint its samples\n", stderr);
  std::exit(1);
}

}  // namespace

void countPainting() {
  countGraphs("graphs_sample_1x", 1);
  countGraphs("graphs_sample_2x", 2);
  countWindow("window_1x", 1);
  countWindow("window_2x", 2);
  countShownSample();
}

}  // namespace pallimo::benchmarks
