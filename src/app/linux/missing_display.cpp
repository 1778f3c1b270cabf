// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <cstdlib>

#include "app/start/make_platform.h"

namespace pallimo::app {

namespace {

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

}  // namespace

std::optional<StartError> missingDisplay() {
  // The last one names a display of Qt's own, such as one that nobody sees.
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    if (isSet(name)) return std::nullopt;
  }
  return StartError{"there is no display to show the window on; run with --headless"};
}

}  // namespace pallimo::app
