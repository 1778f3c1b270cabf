// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/temperature_tables.h"

#include <algorithm>
#include <cstddef>

namespace pallimo::sensors {

namespace {

constexpr std::string_view kPerformance = "Core Performance";
constexpr std::string_view kEfficiency = "Core Efficiency";
constexpr std::string_view kGPU = "GPU";

/// The names alone, sorted for a binary search.
template <std::size_t Size>
constexpr std::array<std::string_view, Size> sortedNames(
    const std::array<TemperatureSensor, Size>& table) {
  std::array<std::string_view, Size> names;
  std::transform(table.begin(), table.end(), names.begin(),
                 [](const TemperatureSensor& sensor) { return sensor.name; });
  std::sort(names.begin(), names.end());
  return names;
}

template <std::size_t Size>
bool holds(const std::array<std::string_view, Size>& names, std::string_view name) {
  return std::binary_search(names.begin(), names.end(), name);
}

}  // namespace

// "Core Efficiency 2" twice, and efficiency cores under names that begin with "Tp": so they are.
constexpr std::array<TemperatureSensor, 47> kCPUTemperatureKeyTable = {{
    {"Te05", "Core Efficiency 1"}, {"Te0H", "Core Efficiency 2"}, {"Te0L", "Core Efficiency 2"},
    {"Te0S", "Core Efficiency 3"}, {"Tp09", "Core Efficiency 4"}, {"Tp0T", "Core Efficiency 5"},
    {"Tp17", "Core Efficiency 6"}, {"Tp1h", "Core Efficiency 7"}, {"Tp01", kPerformance},
    {"Tp05", kPerformance},        {"Tp0D", kPerformance},        {"Tp0H", kPerformance},
    {"Tp0L", kPerformance},        {"Tp0P", kPerformance},        {"Tp0X", kPerformance},
    {"Tp0b", kPerformance},        {"Tp0f", kPerformance},        {"Tp0j", kPerformance},
    {"Tp0n", kPerformance},        {"Tp0r", kPerformance},        {"Tp0v", kPerformance},
    {"Tp13", kPerformance},        {"Tp1F", kPerformance},        {"Tp1J", kPerformance},
    {"Tp1R", kPerformance},        {"Tp1j", kPerformance},        {"Tp1n", kPerformance},
    {"Tp1p", kPerformance},        {"Tp1t", kPerformance},        {"Tp1w", kPerformance},
    {"Tp1z", kPerformance},        {"Tp22", kPerformance},        {"Tp25", kPerformance},
    {"Tp28", kPerformance},        {"Tp2B", kPerformance},        {"Tp2E", kPerformance},
    {"Tp2J", kPerformance},        {"Tp2M", kPerformance},        {"Tp2Q", kPerformance},
    {"Tp2T", kPerformance},        {"Tp2W", kPerformance},        {"Tp2g", kPerformance},
    {"Tp2k", kPerformance},        {"Tp2s", kPerformance},        {"Tp30", kPerformance},
    {"Tp34", kPerformance},        {"Tp3C", kPerformance},
}};

constexpr std::array<TemperatureSensor, 32> kGPUTemperatureKeyTable = {{
    {"Tg05", kGPU}, {"Tg0D", kGPU}, {"Tg0L", kGPU}, {"Tg0T", kGPU}, {"Tg0b", kGPU}, {"Tg0f", kGPU},
    {"Tg0j", kGPU}, {"Tg0r", kGPU}, {"Tg0z", kGPU}, {"Tg17", kGPU}, {"Tg1F", kGPU}, {"Tg1N", kGPU},
    {"Tg1V", kGPU}, {"Tg1d", kGPU}, {"Tg1l", kGPU}, {"Tg1t", kGPU}, {"Tg22", kGPU}, {"Tg2A", kGPU},
    {"Tg2I", kGPU}, {"Tg2Q", kGPU}, {"Tg2Y", kGPU}, {"Tg2g", kGPU}, {"Tg2o", kGPU}, {"Tg2w", kGPU},
    {"Tg34", kGPU}, {"Tg3C", kGPU}, {"Tg3K", kGPU}, {"Tg3S", kGPU}, {"Tg3a", kGPU}, {"Tg3i", kGPU},
    {"Tg3q", kGPU}, {"Tg3y", kGPU},
}};

// There is no "Tp9i".
constexpr std::array<TemperatureSensor, 31> kHIDCPUSensorTable = {{
    {"Tp0i", kPerformance}, {"Tp1i", kPerformance}, {"Tp2i", kPerformance}, {"Tp3i", kPerformance},
    {"Tp4i", kPerformance}, {"Tp5i", kPerformance}, {"Tp6i", kPerformance}, {"Tp7i", kPerformance},
    {"Tp8i", kPerformance}, {"Tpai", kPerformance}, {"Tpbi", kPerformance}, {"Tpci", kPerformance},
    {"Tpdi", kPerformance}, {"Tpei", kPerformance}, {"Tpfi", kPerformance}, {"Te0i", kEfficiency},
    {"Te1i", kEfficiency},  {"Te2i", kEfficiency},  {"Te3i", kEfficiency},  {"Te4i", kEfficiency},
    {"Te5i", kEfficiency},  {"Te6i", kEfficiency},  {"Te7i", kEfficiency},  {"Te8i", kEfficiency},
    {"Te9i", kEfficiency},  {"Teai", kEfficiency},  {"Tebi", kEfficiency},  {"Teci", kEfficiency},
    {"Tedi", kEfficiency},  {"Teei", kEfficiency},  {"Tefi", kEfficiency},
}};

constexpr std::array<TemperatureSensor, 16> kHIDGPUSensorTable = {{
    {"Tg0i", kGPU},
    {"Tg1i", kGPU},
    {"Tg2i", kGPU},
    {"Tg3i", kGPU},
    {"Tg4i", kGPU},
    {"Tg5i", kGPU},
    {"Tg6i", kGPU},
    {"Tg7i", kGPU},
    {"Tg8i", kGPU},
    {"Tg9i", kGPU},
    {"Tgai", kGPU},
    {"Tgbi", kGPU},
    {"Tgci", kGPU},
    {"Tgdi", kGPU},
    {"Tgei", kGPU},
    {"Tgfi", kGPU},
}};

bool isCPUTemperatureKey(std::string_view name) {
  static constexpr auto kNames = sortedNames(kCPUTemperatureKeyTable);
  return holds(kNames, name);
}

bool isGPUTemperatureKey(std::string_view name) {
  static constexpr auto kNames = sortedNames(kGPUTemperatureKeyTable);
  return holds(kNames, name);
}

bool isHIDCPUSensor(std::string_view name) {
  static constexpr auto kNames = sortedNames(kHIDCPUSensorTable);
  return holds(kNames, name);
}

bool isHIDGPUSensor(std::string_view name) {
  static constexpr auto kNames = sortedNames(kHIDGPUSensorTable);
  return holds(kNames, name);
}

}  // namespace pallimo::sensors
