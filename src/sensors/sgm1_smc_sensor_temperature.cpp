// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sgm1_smc_sensor_temperature.h"

#include <utility>
#include <vector>

#include "sensors/sg_system_info.h"
#include "sensors/temperature_tables.h"

namespace pallimo::sensors {

namespace {

constexpr double kLowestCredibleCelsius = 20;
constexpr std::string_view kStandInKey = "Te05";

/// What the chip's family changes about the CPU pass.
struct ChipRules {
  bool skipsTp0 = false;    ///< keys that begin with "Tp0" mean nothing on it
  bool hasStandIn = false;  ///< low values are replaced
};

ChipRules rulesOf(std::string_view brand) {
  const bool isM2 = brand.find("M2") != std::string_view::npos;
  const bool isM4 = brand.find("M4") != std::string_view::npos;
  return {.skipsTp0 = isM4, .hasStandIn = isM2 || isM4};
}

void dropUnlessPositive(TemperatureReadings& readings) {
  // Written so that a value that is not a number goes too.
  std::erase_if(readings, [](const auto& reading) { return !(reading.second > 0); });
}

}  // namespace

SGM1SMCSensorTemperature::SGM1SMCSensorTemperature(ports::SmcDevice& device,
                                                   const ports::SystemControls& controls)
    : SGM1SMCSensors(device), controls_(controls) {
  discoverTemperatureKeys();
}

void SGM1SMCSensorTemperature::discoverTemperatureKeys() {
  openConnection();
  if (const std::optional<std::uint32_t> count = readKeyCount()) {
    std::map<std::string, std::string, std::less<>> types;
    for (const std::string& key : keyAtIndex(0, *count)) {
      if (key.front() != 'T' && key.front() != 't') continue;
      if (std::optional<std::string> type = readKeyInfo(key)) types[key] = std::move(*type);
    }
    availableTemperatureKeys_ = std::move(types);
  }
  std::erase_if(availableTemperatureKeys_, [](const auto& key) {
    return !isCPUTemperatureKey(key.first) && !isGPUTemperatureKey(key.first);
  });
  closeConnection();
}

TemperatureReadings SGM1SMCSensorTemperature::readCPUTemperatures() {
  TemperatureReadings readings;
  openConnection();
  const ChipRules rules = rulesOf(SGSystemInfo(controls_).cpuBrandString());
  for (const auto& [key, type] : availableTemperatureKeys_) {
    if (!isCPUTemperatureKey(key) || (rules.skipsTp0 && key.starts_with("Tp0"))) continue;
    if (const std::optional<double> value = readValue(key, type)) readings[key] = *value;
  }
  double standIn = 0;
  if (rules.hasStandIn) standIn = readValue(kStandInKey, "flt ").value_or(0);
  closeConnection();

  dropUnlessPositive(readings);
  if (!rules.hasStandIn) return readings;
  for (auto& [key, value] : readings) {
    if (value < kLowestCredibleCelsius) value = standIn;
  }
  return readings;
}

TemperatureReadings SGM1SMCSensorTemperature::readGPUTemperatures() {
  TemperatureReadings readings;
  openConnection();
  for (const auto& [key, type] : availableTemperatureKeys_) {
    if (!isGPUTemperatureKey(key)) continue;
    if (const std::optional<double> value = readValue(key, type)) readings[key] = *value;
  }
  closeConnection();
  dropUnlessPositive(readings);
  return readings;
}

}  // namespace pallimo::sensors
