// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/make_platform.h"

#include <unistd.h>

#include <utility>

#include "app/macos/mac_platform.h"

namespace pallimo::app {

namespace {

/// What stands for the Mac, its settings and its time elsewhere has no meaning on one.
std::optional<StartError> simulationAskedFor(const Options& options) {
  if (options.machine) return StartError{"--machine: a Mac shows itself"};
  if (options.speed != 1) return StartError{"--speed: a Mac has one speed"};
  if (options.stateDir) return StartError{"--state-dir: a Mac keeps the settings in its own store"};
  return std::nullopt;
}

}  // namespace

std::variant<std::unique_ptr<PlatformOwner>, StartError> makePlatform(const Options& options,
                                                                      Analytics analytics) {
  if (auto problem = simulationAskedFor(options)) return *std::move(problem);
  const int console = outputIsForResults(options) ? STDERR_FILENO : STDOUT_FILENO;
  return std::make_unique<macos::MacPlatform>(macos::MacPlatform::Parts{
      adapters::qt::SystemClock::realNow(), console, std::move(analytics)});
}

// A window can always be shown: a user who is logged in has a display.
std::optional<StartError> missingDisplay() { return std::nullopt; }

std::variant<std::vector<std::string>, StartError> listedMachines(const Options&) {
  return StartError{"--list-machines: a Mac shows itself"};
}

}  // namespace pallimo::app
