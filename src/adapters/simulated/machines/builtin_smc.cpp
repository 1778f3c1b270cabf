// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_smc.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/simulated/recordings/smc_value.h"

namespace pallimo::adapters::simulated {

namespace {

constexpr std::string_view kFloat = "flt ";
constexpr double kTemperatureAtRest = 34;  // degrees Celsius

/// Keys that only differ in their last two characters: "VC00", "VC01", ... Their values rise by
/// `step` from key to key.
struct Family {
  std::string_view prefix;
  std::size_t count;
  std::string_view type;
  double first;
  double step;
};

constexpr std::array kFamilies{
    // Watts, volts and amperes of the rails of cores, memory and GPU.
    Family{"PC", 24, "flt ", 0.021, 0.004}, Family{"VC", 24, "flt ", 0.74, 0.004},
    Family{"IC", 24, "flt ", 0.03, 0.005}, Family{"PM", 12, "flt ", 0.11, 0.01},
    Family{"VM", 12, "flt ", 1.05, 0.01}, Family{"IM", 12, "flt ", 0.1, 0.01},
    Family{"PG", 16, "flt ", 0.012, 0.002}, Family{"VG", 16, "flt ", 0.66, 0.003},
    Family{"IG", 16, "flt ", 0.02, 0.003},
    // Temperatures of what is not the chip's cores: board, drive, regulators, memory.
    Family{"TC", 16, "flt ", 31, 0.2}, Family{"TR", 12, "flt ", 30, 0.2},
    Family{"TS", 8, "flt ", 29, 0.2}, Family{"TV", 12, "flt ", 32, 0.2},
    Family{"Tm", 8, "fpe2", 30, 0.25}, Family{"tP", 4, "flt ", 30, 0.2},
    // Limits, states and energies (joules) that the controller keeps for itself.
    Family{"zE", 12, "ui16", 400, 25}, Family{"zC", 12, "ui8 ", 1, 1},
    Family{"DE", 12, "ioft", 5200, 131.5}};

struct Single {
  std::string_view key;
  std::string_view type;
  double value;
};

constexpr std::array kSingles{Single{"CLKH", "ui32", 93'784}, Single{"MSLD", "ui8 ", 0},
                              Single{"PDTR", "flt ", 6.4},    Single{"PSTR", "flt ", 5.9},
                              Single{"TB0T", "flt ", 29.5},   Single{"TW0P", "flt ", 31.2},
                              Single{"TaLP", "flt ", 30.1},   Single{"TaRF", "flt ", 29.8},
                              Single{"Ts0P", "flt ", 28.9},   Single{"VD0R", "flt ", 15.1}};

void add(RecordedSmc& smc, std::string key, std::string_view type, double value) {
  smc.keys.push_back({.key = std::move(key),
                      .type = std::string(type),
                      .size = smcSize(type),
                      .bytes = smcValue(type, value)});
}

std::string numbered(std::string_view prefix, std::size_t number) {
  constexpr std::string_view kDigits =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return std::string(prefix) + kDigits[number / kDigits.size()] + kDigits[number % kDigits.size()];
}

void addFans(RecordedSmc& smc, int fans) {
  add(smc, "FNum", "ui8 ", fans);
  for (int i = 0; i < fans; ++i) {
    const std::string fan = "F" + std::to_string(i);
    add(smc, fan + "Ac", kFloat, 1350 + 20 * i);  // revolutions a minute
    add(smc, fan + "Mn", kFloat, 1350);
    add(smc, fan + "Mx", kFloat, 5900);
    add(smc, fan + "Tg", kFloat, 1350);
    add(smc, fan + "Md", "ui8 ", 0);
  }
}

void addSensors(RecordedSmc& smc, const MachineDescription& machine) {
  for (const ClusterDescription& cluster : machine.clusters) {
    for (const auto& key : cluster.sensors.smc) add(smc, key, kFloat, kTemperatureAtRest);
  }
  for (const auto& key : machine.gpu.sensors.smc) add(smc, key, kFloat, kTemperatureAtRest);
}

}  // namespace

RecordedSmc smcOf(const MachineDescription& machine) {
  RecordedSmc smc;
  smc.isAvailable = true;
  addSensors(smc, machine);
  addFans(smc, machine.fans);
  for (const Single& single : kSingles) {
    add(smc, std::string(single.key), single.type, single.value);
  }
  for (const Family& family : kFamilies) {
    for (std::size_t i = 0; i < family.count; ++i) {
      const double value = family.first + family.step * static_cast<double>(i);
      add(smc, numbered(family.prefix, i), family.type, value);
    }
  }
  smc.keyCount = static_cast<std::uint32_t>(smc.keys.size() + 1);
  add(smc, "#KEY", "ui32", *smc.keyCount);
  std::sort(smc.keys.begin(), smc.keys.end(),
            [](const SmcKey& left, const SmcKey& right) { return left.key < right.key; });
  return smc;
}

}  // namespace pallimo::adapters::simulated
