// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/display_settings.h"

namespace pallimo::ui {

DisplaySettings readDisplaySettings(const ports::UserDefaults& defaults) {
  DisplaySettings settings;
  settings.gpuFrequency = defaults.boolForKey(settings_key::kGpuFrequency);
  settings.gpuUtilization = defaults.boolForKey(settings_key::kGpuUtilization);
  settings.showEPUtilization = defaults.boolForKey(settings_key::kShowEPUtilization);
  settings.isFahrenheit = defaults.integerForKey(settings_key::kTemperatureUnit) != 0;
  return settings;
}

}  // namespace pallimo::ui
