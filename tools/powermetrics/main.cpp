// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <time.h>

#include <csignal>

#include "tools/powermetrics/powermetrics_tool.h"
#include "tools/powermetrics/process_surroundings.h"

namespace {

double seconds(clockid_t clock) {
  struct timespec now = {};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace pallimo::tools::powermetrics;
  std::signal(SIGPIPE, SIG_IGN);
  return runPowermetrics({argv + (argc > 0 ? 1 : 0), argv + argc},
                         processSurroundings({.wall = [] { return seconds(CLOCK_REALTIME); },
                                              .steady = [] { return seconds(CLOCK_MONOTONIC); }}));
}
