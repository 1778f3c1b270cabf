// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The works whose instructions scripts/count_instructions counts under Callgrind and holds against
// limits.txt. Instructions, not times: the machine's load has no part in them, so that a limit can
// stand close to the figure.

#include "benchmarks/counted_work.h"

#include <QApplication>

int main(int argc, char** argv) {
  // Both would be different in every run: the order in Qt's tables, and what is drawn on.
  qputenv("QT_HASH_SEED", "0");
  qputenv("QT_QPA_PLATFORM", "offscreen");
  pallimo::benchmarks::countSamples();
  pallimo::benchmarks::countLog();
  pallimo::benchmarks::countServices();
  const QApplication application(argc, argv);
  pallimo::benchmarks::countPainting();
}
