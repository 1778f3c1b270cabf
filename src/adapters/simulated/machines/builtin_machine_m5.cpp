// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

using Table = std::vector<int>;  // MHz

// No document of this chip was at hand. Clusters and processor numbers are as reported for it; the
// tables are made up, of the size that is published: about 4.3 GHz for the performance cores,
// 4.6 GHz for the super cores and 1.6 GHz for the GPU. So is the model identifier.
Table m5Performance() {
  return {972,  1188, 1452, 1728, 2004, 2280, 2556, 2820, 3072,
          3312, 3528, 3720, 3888, 4032, 4152, 4236, 4308};
}
Table m5Super() {
  return {1308, 1596, 1896, 2196, 2496, 2784, 3060, 3312, 3540,
          3744, 3924, 4080, 4212, 4320, 4416, 4500, 4560, 4608};
}
Table m5Gpu() { return {338, 486, 636, 792, 948, 1092, 1224, 1344, 1446, 1530, 1620}; }

}  // namespace

MachineDescription macBookProM5Pro() {
  MachineDescription machine;
  machine.name = "MacBook Pro M5 Pro";
  machine.chip = "Apple M5 Pro";
  machine.model = "Mac17,9";
  machine.osVersion = "25F71";
  machine.memoryBytes = 24 * kGibibyte;
  machine.fans = 2;
  machine.display = {"Color LCD", 3024, 1964};
  machine.clusters = {{"P0-Cluster", CoreKind::performance, 6, m5Performance(), 1900},
                      {"P1-Cluster", CoreKind::performance, 6, m5Performance(), 1900},
                      {"S-Cluster", CoreKind::super, 6, m5Super(), 5600}};
  machine.clusters[0].sensors.smc = {"Tp01", "Tp05", "Tp0D", "Tp0H", "Tp0L", "Tp0P"};
  machine.clusters[1].sensors.smc = {"Tp0X", "Tp0b", "Tp0f", "Tp0j", "Tp0n", "Tp0r"};
  machine.clusters[2].sensors.smc = {"Tp2B", "Tp2E", "Tp2J", "Tp2M", "Tp2Q",
                                     "Tp2T", "Tp2W", "Tp2g", "Tp2k", "Tp2s"};
  machine.gpu = {20, m5Gpu(), 31000};
  machine.gpu.sensors.smc = {"Tg05", "Tg0D", "Tg0L", "Tg0T", "Tg0b", "Tg0f", "Tg0j", "Tg0r",
                             "Tg0z", "Tg17", "Tg1F", "Tg1N", "Tg1V", "Tg1d", "Tg1l", "Tg1t"};
  machine.anePeakMilliwatts = 4600;
  return machine;
}

}  // namespace pallimo::adapters::simulated
