// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/machines/builtin_sensors.h"
#include "adapters/simulated/machines/load_model.h"
#include "adapters/simulated/machines/powermetrics_document.h"

namespace pallimo::adapters::simulated::tests {

/// What an app reads off a machine for one sample.
struct MachineSample {
  double demand = 0;   ///< what the machine was asked for; no app can see this
  double package = 0;  ///< W, as are the next three
  double cpu = 0;
  double gpu = 0;
  double ane = 0;
  std::vector<double> frequencies;  ///< MHz, of each cluster
  double gpuFrequency = 0;          ///< MHz
  std::vector<double> cpuReadings;  ///< degrees Celsius
  std::vector<double> gpuReadings;
  std::vector<double> busy;  ///< share of the last second, of each processor
  double gpuBusy = 0;
};

inline double meanOf(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

inline float floatOf(const SmcBytes& bytes) {
  std::uint32_t bits = 0;
  for (std::size_t i = 4; i-- > 0;) bits = bits << 8 | bytes->at(i);
  return std::bit_cast<float>(bits);
}

inline double numberAt(const base::PropertyList& dictionary, const char* key) {
  const auto* value = dictionary.find(key);
  if (value == nullptr || !value->isNumber()) ADD_FAILURE() << "no number " << key;
  return value == nullptr ? 0 : value->numberOr(0);
}

/// A machine looked at once a second, from second 1 on, with samples of this period: as the app
/// does, energies count as spread over the period that was asked for, which is a little too short.
class SampledMachine {
 public:
  SampledMachine(const MachineDescription& machine, std::uint64_t seed,
                 std::chrono::milliseconds period)
      : machine_(machine), seed_(seed), period_(period), sensors_(machine, seed) {
    before_ = *sensors_.stepAt(0).ticks;
  }

  MachineSample next() {
    ++second_;
    MachineSample sample;
    sample.demand = demandAt(seed_, second_ - std::chrono::duration<double>(period_).count() / 2);
    readDocument(sample);
    readSensors(sample);
    return sample;
  }

 private:
  void readDocument(MachineSample& sample) const {
    DocumentRequest request;
    request.seed = seed_;
    request.time = second_;
    request.period = period_;
    request.samplers = {.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = false};
    const auto document = libplist::LibplistReader().read(powermetricsDocument(machine_, request));
    ASSERT_TRUE(document);
    const auto& processor = *document->find("processor");
    const auto milliseconds = static_cast<double>(period_.count());
    sample.package = numberAt(processor, "combined_power") / 1000;
    sample.cpu = numberAt(processor, "cpu_energy") / milliseconds;
    sample.gpu = numberAt(processor, "gpu_energy") / milliseconds;
    sample.ane = numberAt(processor, "ane_energy") / milliseconds;
    for (const auto& cluster : *processor.find("clusters")->array()) {
      sample.frequencies.push_back(numberAt(cluster, "freq_hz") / 1e6);
    }
    sample.gpuFrequency = numberAt(*document->find("gpu"), "freq_hz");
  }

  void readSensors(MachineSample& sample) {
    const RecordingStep step = sensors_.stepAt(second_);
    for (const ClusterDescription& cluster : machine_.clusters) {
      read(sample.cpuReadings, step, cluster.sensors);
    }
    read(sample.gpuReadings, step, machine_.gpu.sensors);
    for (std::size_t i = 0; i < step.ticks->size(); ++i) {
      sample.busy.push_back(busyShare(before_[i], (*step.ticks)[i]));
    }
    before_ = *step.ticks;
    const auto& statistics = *step.accelerators->front().performanceStatistics;
    sample.gpuBusy = numberAt(statistics, "Device Utilization %") / 100;
  }

  /// Readings of the source that the machine's model has; a core that sleeps is as warm as "Te05".
  void read(std::vector<double>& readings, const RecordingStep& step,
            const SensorNames& names) const {
    if (machine_.temperatures == TemperatureSource::hid) {
      for (const auto& name : names.hid) readings.push_back(hidReading(step, name));
      return;
    }
    for (const auto& key : names.smc) {
      const double reading = floatOf(step.smc.at(key));
      const bool sleeps = machine_.sleepingCoresReadLow && reading < 20;
      readings.push_back(sleeps ? floatOf(step.smc.at("Te05")) : reading);
    }
  }

  static double hidReading(const RecordingStep& step, const std::string& name) {
    for (const HidReading& reading : *step.hid) {
      std::string found;
      for (int shift = 24; shift >= 0; shift -= 8) {
        found += static_cast<char>(*reading.locationID >> shift & 0xFF);
      }
      if (found == name) return reading.value.value_or(-1);
    }
    ADD_FAILURE() << "no sensor " << name;
    return -1;
  }

  static double busyShare(const ports::ProcessorTickCounts& before,
                          const ports::ProcessorTickCounts& after) {
    double all = 0;
    for (std::size_t i = 0; i < after.size(); ++i) all += after[i] - before[i];
    return 1 - (after[2] - before[2]) / all;
  }

  const MachineDescription& machine_;
  std::uint64_t seed_;
  std::chrono::milliseconds period_;
  BuiltinSensors sensors_;
  std::vector<ports::ProcessorTickCounts> before_;
  int second_ = 0;
};

}  // namespace pallimo::adapters::simulated::tests
