// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

using Table = std::vector<int>;  // MHz

// The tables of the M4 Max are those that the M4 Pro prints; the M4 differs from them at the top.
Table m4Efficiency() { return {1020, 1404, 1788, 2112, 2352, 2532, 2592, 2892}; }
Table m4Performance() {
  return {1260, 1512, 1800, 2088, 2352, 2616, 2868, 3096, 3300, 3468,
          3624, 3756, 3852, 3924, 3996, 4044, 4104, 4416, 4464};
}
Table m4MaxEfficiency() { return {1020, 1404, 1788, 2112, 2352, 2532, 2592}; }
Table m4MaxPerformance() {
  return {1260, 1512, 1800, 2088, 2352, 2616, 2868, 3096, 3300, 3468,
          3624, 3756, 3852, 3924, 3996, 4044, 4104, 4416, 4512};
}
Table m4Gpu() {
  return {338, 618, 796, 924, 952, 1056, 1062, 1182, 1242, 1312, 1326, 1380, 1470, 1578};
}

}  // namespace

MachineDescription macMiniM4() {
  MachineDescription machine;
  machine.name = "Mac mini M4";
  machine.chip = "Apple M4";
  machine.model = "Mac16,10";
  machine.osVersion = "24F74";
  machine.memoryBytes = 16 * kGibibyte;
  machine.fans = 1;
  machine.display = {"Studio Display", 5120, 2880};
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 6, m4Efficiency(), 480},
                      {"P-Cluster", CoreKind::performance, 4, m4Performance(), 5200}};
  machine.sleepingCoresReadLow = true;
  machine.clusters[0].sensors.smc = {"Te05", "Te0H", "Te0S", "Tp09", "Tp0T"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H", "Tp13", "Tp1F",
                                     "Tp1J", "Tp1R", "Tp1j", "Tp1n", "Tp1p", "Tp1t"};
  machine.gpu = {10, m4Gpu(), 13500};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0j", "Tg0r", "Tg0z"};
  machine.anePeakMilliwatts = 3900;
  return machine;
}

MachineDescription macBookProM4Max() {
  MachineDescription machine;
  machine.name = "MacBook Pro M4 Max";
  machine.chip = "Apple M4 Max";
  machine.model = "Mac16,5";
  machine.osVersion = "24F74";
  machine.memoryBytes = 48 * kGibibyte;
  machine.fans = 2;
  machine.display = {"Color LCD", 3456, 2234};
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 4, m4MaxEfficiency(), 480},
                      {"P0-Cluster", CoreKind::performance, 6, m4MaxPerformance(), 4900},
                      {"P1-Cluster", CoreKind::performance, 6, m4MaxPerformance(), 4900}};
  machine.sleepingCoresReadLow = true;
  machine.clusters[0].sensors.smc = {"Te05", "Te0H", "Te0L", "Te0S", "Tp09", "Tp0T"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp13", "Tp1F",
                                     "Tp1J", "Tp1R", "Tp1j", "Tp1n"};
  machine.clusters[2].sensors.smc = {"Tp0H", "Tp0L", "Tp0P", "Tp1p", "Tp1t",
                                     "Tp1w", "Tp1z", "Tp22", "Tp25"};
  machine.gpu = {40, m4Gpu(), 58000};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0f", "Tg0j",
                             "Tg0r", "Tg0z", "Tg17", "Tg1F", "Tg1N", "Tg1V", "Tg1d",
                             "Tg1l", "Tg1t", "Tg22", "Tg2A", "Tg2I", "Tg2Q"};
  machine.anePeakMilliwatts = 4400;
  return machine;
}

}  // namespace pallimo::adapters::simulated
