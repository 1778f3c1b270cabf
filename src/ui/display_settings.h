// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/settings_keys.h"
#include "ports/user_defaults.h"

namespace pallimo::ui {

namespace settings_key = ports::settings_key;

/// What the user has chosen to see.
struct DisplaySettings {
  bool gpuFrequency = false;
  bool gpuUtilization = false;
  bool showEPUtilization = false;
  bool isFahrenheit = false;  ///< any stored unit but 0
  bool operator==(const DisplaySettings&) const = default;
};

/// As it is stored at the moment; nothing stored gives the defaults. Any thread.
DisplaySettings readDisplaySettings(const ports::UserDefaults& defaults);

}  // namespace pallimo::ui
