// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ports/user_defaults.h"

namespace pallimo::ui {

/// The keys of the settings that the panels and the settings window share.
namespace settings_key {
inline constexpr const char* kGpuFrequency = "gpuFrequency";
inline constexpr const char* kGpuUtilization = "gpuUtilization";
inline constexpr const char* kShowEPUtilization = "showEPUtilization";
inline constexpr const char* kTemperatureUnit = "temperatureUnit";
inline constexpr const char* kPathFolderLocation = "pathFolderLocation";
}  // namespace settings_key

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
