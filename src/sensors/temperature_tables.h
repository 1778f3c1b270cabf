// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <string_view>

namespace pallimo::sensors {

/// A sensor that counts, and what it is called. Names are compared exactly, upper and lower case
/// apart; labels take part in no decision.
struct TemperatureSensor {
  std::string_view name;  ///< four characters
  std::string_view label;
};

// The sensors that the CPU's and the GPU's figures are made of, of all machines together; a machine
// has some of them. First those of the SMC, then those that the power-management unit publishes
// through the HID event system.
extern const std::array<TemperatureSensor, 47> kCPUTemperatureKeyTable;
extern const std::array<TemperatureSensor, 32> kGPUTemperatureKeyTable;
extern const std::array<TemperatureSensor, 31> kHIDCPUSensorTable;
extern const std::array<TemperatureSensor, 16> kHIDGPUSensorTable;

/// Whether the name is one of those four tables'. Without going through the table: the SMC's
/// passes ask it for every key of every sample.
bool isCPUTemperatureKey(std::string_view name);
bool isGPUTemperatureKey(std::string_view name);
bool isHIDCPUSensor(std::string_view name);
bool isHIDGPUSensor(std::string_view name);

}  // namespace pallimo::sensors
