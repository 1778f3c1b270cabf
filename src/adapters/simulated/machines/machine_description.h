// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pallimo::adapters::simulated {

/// What a cluster's cores are made for, slowest first. It decides which work they get and where
/// they are counted.
enum class CoreKind { efficiency, performance, super };

/// The temperature sensors of one part of the chip, four characters each.
struct SensorNames {
  std::vector<std::string> smc = {};  ///< keys of the SMC, "Tp01"
  std::vector<std::string> hid = {};  ///< "LocationID" of HID services, read as text, "Tp0i"
};

/// One CPU cluster. Its cores share one clock and its frequency table; processors are numbered
/// through all clusters in their order.
struct ClusterDescription {
  std::string name;  ///< as powermetrics names it, "P0-Cluster"
  CoreKind kind = CoreKind::performance;
  std::size_t cores = 0;
  std::vector<int> frequencies = {};  ///< MHz, rising
  double peakCoreMilliwatts = 0;      ///< one core, busy at the highest frequency
  SensorNames sensors = {};           ///< one a core in turn, beginning again at the first core

  double peakMilliwatts() const { return static_cast<double>(cores) * peakCoreMilliwatts; }
};

struct GpuDescription {
  int cores = 0;
  std::vector<int> frequencies = {};  ///< MHz, rising
  double peakMilliwatts = 0;
  SensorNames sensors = {};
};

/// The screen that is attached.
struct DisplayDescription {
  std::string name;
  int width = 0;  ///< pixels
  int height = 0;
};

/// Who answers for the temperatures on machines of a model.
enum class TemperatureSource { smc, hid };

/// A Mac as data: everything in which one built-in machine differs from another.
struct MachineDescription {
  std::string name;       ///< "MacBook Pro M2 Pro"; what --machine takes
  std::string chip;       ///< the processor's brand, "Apple M2 Pro"
  std::string model;      ///< "Mac14,9"
  std::string osVersion;  ///< the system's build
  std::int64_t memoryBytes = 0;
  int fans = 0;
  DisplayDescription display;
  TemperatureSource temperatures = TemperatureSource::smc;
  /// The SMC's sensors of cores that sleep read a few degrees, which nothing on a chip can have.
  bool sleepingCoresReadLow = false;
  std::vector<ClusterDescription> clusters;
  GpuDescription gpu;
  double anePeakMilliwatts = 0;

  std::size_t coreCount() const;
  std::size_t coreCount(CoreKind kind) const;
  /// The kinds of core that it has, fastest first.
  std::vector<CoreKind> kinds() const;
  /// What it draws when everything is busy at its highest frequency.
  double peakMilliwatts() const;
};

}  // namespace pallimo::adapters::simulated
