// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>

#include "tools/powermetrics/powermetrics_tool.h"

namespace pallimo::tools::powermetrics {

/// The system's clocks, in seconds. Handed in by main, the one place of the tool that reads them.
struct Clocks {
  std::function<double()> wall;    ///< since 1970
  std::function<double()> steady;  ///< since some moment; never set, never going back
};

/// The surroundings of a real process: its environment, these clocks, standard output and standard
/// error. The wait watches standard output, so that a vanished reader ends it at once. SIGPIPE must
/// be ignored, so that writing to a vanished reader fails instead of ending the process.
ToolSurroundings processSurroundings(const Clocks& clocks);

}  // namespace pallimo::tools::powermetrics
