// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/recordings/smc_value.h"
#include "sensors/temperature_tables.h"

namespace pallimo::benchmarks {

/// The names that the tables of temperature sensors know, of CPU and GPU in turn.
inline std::vector<std::string_view> knownTemperatureKeys() {
  const auto& cpu = sensors::kCPUTemperatureKeyTable;
  const auto& gpu = sensors::kGPUTemperatureKeyTable;
  std::vector<std::string_view> names;
  for (std::size_t i = 0; i < cpu.size() || i < gpu.size(); ++i) {
    if (i < cpu.size()) names.push_back(cpu[i].name);
    if (i < gpu.size()) names.push_back(gpu[i].name);
  }
  return names;
}

/// A name of four characters that begins with these two, another one for each number below 3,844.
inline std::string numberedKey(std::string_view prefix, std::size_t number) {
  constexpr std::string_view kDigits =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return std::string(prefix) + kDigits[number / kDigits.size()] + kDigits[number % kDigits.size()];
}

/// An SMC of so many keys, 10,000 at most, mixed as on a Mac: of each four one is a temperature
/// that the tables know, as long as they know another (they name 79), one a temperature of
/// something else, and two are no temperature. All of them read 42. A pure function, any thread.
inline adapters::simulated::RecordedSmc smcOfKeys(std::size_t keys) {
  const std::vector<std::string_view> known = knownTemperatureKeys();
  adapters::simulated::RecordedSmc smc;
  smc.isAvailable = true;
  smc.keyCount = static_cast<std::uint32_t>(keys);
  smc.keys.reserve(keys);
  for (std::size_t i = 0; i < keys; ++i) {
    const std::size_t four = i / 4;
    const bool isKnown = i % 4 == 0 && four < known.size();
    const std::string name = isKnown      ? std::string(known[four])
                             : i % 4 == 0 ? numberedKey("IX", four)
                             : i % 4 == 1 ? numberedKey("TX", four)
                             : i % 4 == 2 ? numberedKey("VX", four)
                                          : numberedKey("PX", four);
    smc.keys.push_back({.key = name,
                        .type = "flt ",
                        .size = 4,
                        .bytes = adapters::simulated::smcValue("flt ", 42)});
  }
  return smc;
}

}  // namespace pallimo::benchmarks
