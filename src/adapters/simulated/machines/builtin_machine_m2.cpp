// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

using Table = std::vector<int>;  // MHz

Table m2Efficiency() { return {600, 912, 1284, 1752, 2004, 2256, 2424}; }
Table m2Performance() {
  return {660,  924,  1188, 1452, 1704, 1968, 2208, 2400, 2568,
          2724, 2868, 3000, 3132, 3264, 3360, 3408, 3504};
}
Table m2UltraEfficiency() { return {912, 1284, 1752, 2004, 2256, 2424}; }
Table m2UltraPerformance() {
  return {702,  948,  1188, 1452, 1704, 1968, 2208, 2400, 2568,
          2724, 2868, 3000, 3132, 3264, 3360, 3408, 3504};
}
Table m2Gpu() { return {444, 612, 808, 968, 1110, 1236, 1338, 1398}; }

}  // namespace

MachineDescription macBookProM2Pro() {
  MachineDescription machine;
  machine.name = "MacBook Pro M2 Pro";
  machine.chip = "Apple M2 Pro";
  machine.model = "Mac14,9";
  machine.osVersion = "23G93";
  machine.memoryBytes = 16 * kGibibyte;
  machine.fans = 2;
  machine.display = {"Color LCD", 3024, 1964};
  machine.clusters = {{"E-Cluster", CoreKind::efficiency, 4, m2Efficiency(), 420},
                      {"P0-Cluster", CoreKind::performance, 4, m2Performance(), 4300},
                      {"P1-Cluster", CoreKind::performance, 4, m2Performance(), 4300}};
  machine.sleepingCoresReadLow = true;
  machine.clusters[0].sensors.smc = {"Te05", "Te0H", "Te0L", "Te0S"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H",
                                     "Tp0L", "Tp0P", "Tp0X", "Tp0b"};
  machine.clusters[2].sensors.smc = {"Tp0f", "Tp0j", "Tp0n", "Tp0r",
                                     "Tp0v", "Tp13", "Tp1F", "Tp1J"};
  machine.gpu = {19, m2Gpu(), 21000};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0f", "Tg0j", "Tg0r",
                             "Tg0z", "Tg17", "Tg1F", "Tg1N", "Tg1V", "Tg1d", "Tg1l", "Tg1t"};
  machine.anePeakMilliwatts = 3800;
  return machine;
}

MachineDescription macStudioM2Ultra() {
  MachineDescription machine;
  machine.name = "Mac Studio M2 Ultra";
  machine.chip = "Apple M2 Ultra";
  machine.model = "Mac14,14";
  machine.osVersion = "23E224";
  machine.memoryBytes = 128 * kGibibyte;
  machine.fans = 2;
  machine.display = {"Studio Display", 5120, 2880};
  machine.clusters = {{"E0-Cluster", CoreKind::efficiency, 4, m2UltraEfficiency(), 420},
                      {"P0-Cluster", CoreKind::performance, 4, m2UltraPerformance(), 4300},
                      {"P1-Cluster", CoreKind::performance, 4, m2UltraPerformance(), 4300},
                      {"E1-Cluster", CoreKind::efficiency, 4, m2UltraEfficiency(), 420},
                      {"P2-Cluster", CoreKind::performance, 4, m2UltraPerformance(), 4300},
                      {"P3-Cluster", CoreKind::performance, 4, m2UltraPerformance(), 4300}};
  machine.sleepingCoresReadLow = true;
  machine.clusters[0].sensors.smc = {"Te05", "Te0H"};
  machine.clusters[1].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H"};
  machine.clusters[2].sensors.smc = {"Tp0L", "Tp0P", "Tp0X", "Tp0b"};
  machine.clusters[3].sensors.smc = {"Te0L", "Te0S"};
  machine.clusters[4].sensors.smc = {"Tp0f", "Tp0j", "Tp0n", "Tp0r"};
  machine.clusters[5].sensors.smc = {"Tp0v", "Tp13", "Tp1F", "Tp1J"};
  machine.gpu = {60, m2Gpu(), 88000};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0f", "Tg0j",
                             "Tg0r", "Tg0z", "Tg17", "Tg1F", "Tg1N", "Tg1V", "Tg1d",
                             "Tg1l", "Tg1t", "Tg22", "Tg2A", "Tg2I", "Tg2Q"};
  machine.anePeakMilliwatts = 7600;
  return machine;
}

}  // namespace pallimo::adapters::simulated
