// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

namespace pallimo::ports::settings_key {

// The names under which the user's settings are stored: those that more than one part of the app
// reads or writes. Nothing stored is off, 0 or none.

inline constexpr const char* kGpuFrequency = "gpuFrequency";  ///< also whether it is measured
inline constexpr const char* kGpuUtilization = "gpuUtilization";
inline constexpr const char* kShowEPUtilization = "showEPUtilization";
inline constexpr const char* kTemperatureUnit = "temperatureUnit";        ///< 0: Celsius
inline constexpr const char* kPathFolderLocation = "pathFolderLocation";  ///< of the log files
inline constexpr const char* kSamplingResolution = "samplingResolution";  ///< milliseconds

}  // namespace pallimo::ports::settings_key
