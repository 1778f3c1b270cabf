// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

using Table = std::vector<int>;  // MHz

Table m1Efficiency() { return {600, 972, 1332, 1704, 2064}; }
Table m1Performance() {
  return {600, 828, 1056, 1284, 1500, 1728, 1956, 2184, 2388, 2592, 2772, 2988, 3096, 3144, 3204};
}
Table m1Gpu() { return {396, 528, 720, 924, 1128, 1278}; }
Table m1ProPerformance() {
  return {600, 828, 1056, 1296, 1524, 1752, 1980, 2208, 2448, 2676, 2904, 3036, 3132, 3168, 3228};
}
Table m1ProGpu() { return {388, 486, 648, 777, 972, 1296}; }

}  // namespace

MachineDescription macBookAirM1() {
  MachineDescription machine;
  machine.name = "MacBook Air M1";
  machine.chip = "Apple M1";
  machine.model = "MacBookAir10,1";
  machine.osVersion = "22E252";
  machine.memoryBytes = 8 * kGibibyte;
  machine.display = {"Color LCD", 2560, 1600};
  machine.temperatures = TemperatureSource::hid;
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 4, m1Efficiency(), 170},
                      {"P-Cluster", CoreKind::performance, 4, m1Performance(), 3600}};
  machine.clusters[0].sensors.smc = {"Tp09", "Tp0T"};
  machine.clusters[0].sensors.hid = {"Te0i", "Te1i", "Te2i", "Te3i"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H",
                                     "Tp0L", "Tp0P", "Tp0X", "Tp0b"};
  machine.clusters[1].sensors.hid = {"Tp0i", "Tp1i", "Tp2i", "Tp3i",
                                     "Tp4i", "Tp5i", "Tp6i", "Tp7i"};
  machine.gpu = {8, m1Gpu(), 8500};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T"};
  machine.gpu.sensors.hid = {"Tg0i", "Tg1i", "Tg2i", "Tg3i"};
  machine.anePeakMilliwatts = 2200;
  return machine;
}

MachineDescription macBookProM1Pro() {
  MachineDescription machine;
  machine.name = "MacBook Pro M1 Pro";
  machine.chip = "Apple M1 Pro";
  machine.model = "MacBookPro18,3";
  machine.osVersion = "25F71";
  machine.memoryBytes = 16 * kGibibyte;
  machine.fans = 2;
  machine.display = {"Color LCD", 3024, 1964};
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 2, m1Efficiency(), 200},
                      {"P0-Cluster", CoreKind::performance, 4, m1ProPerformance(), 3700},
                      {"P1-Cluster", CoreKind::performance, 4, m1ProPerformance(), 3700}};
  machine.clusters[0].sensors.smc = {"Tp09", "Tp0T"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H"};
  machine.clusters[2].sensors.smc = {"Tp0L", "Tp0P", "Tp0X", "Tp0b"};
  machine.gpu = {16, m1ProGpu(), 20000};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0f", "Tg0j", "Tg0r"};
  machine.anePeakMilliwatts = 2800;
  return machine;
}

}  // namespace pallimo::adapters::simulated
