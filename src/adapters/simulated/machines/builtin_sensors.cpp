// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/builtin_sensors.h"

#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/simulated/machines/load_curve.h"
#include "adapters/simulated/machines/load_model.h"
#include "adapters/simulated/recordings/smc_value.h"
#include "base/four_char_code.h"

namespace pallimo::adapters::simulated {

namespace {

// Channels of chance, beside the load's own: one a sensor in the order of the machine's tables.
constexpr std::uint64_t kFirstSmcSensor = 1000;
constexpr std::uint64_t kFirstHidSensor = 2000;

constexpr double kAsleep = 0.03;        // a core that is busy for less of the time sleeps
constexpr double kAsleepReading = 3.5;  // degrees Celsius

// What the power-management unit publishes beside the chip's own sensors. The first is the one
// number that the series of performance cores leaves out, the last has no event.
constexpr std::string_view kOtherHidSensors[] = {"Tp9i", "Tb0i", "Ts0i", "Tn0i"};
constexpr std::string_view kHidSensorWithoutEvent = "Tn0i";
constexpr double kBoardTemperature = 30;

/// One sensor after the other, each a little apart from the truth in its own way.
class Thermometers {
 public:
  Thermometers(std::uint64_t seed, std::uint64_t channel, double time)
      : curve_(seed), channel_(channel), time_(time) {}

  double read(double temperature) {
    const double offset = 4 * curve_.chance(channel_, -1) - 2;
    const double flicker = 0.8 * curve_.noise(channel_, time_, 2.3) - 0.4;
    ++channel_;
    return temperature + offset + flicker;
  }

 private:
  LoadCurve curve_;
  std::uint64_t channel_;
  double time_;
};

using SmcValues = std::map<std::string, SmcBytes>;

SmcValues smcValues(const MachineDescription& machine, const MachineHeat& heat, const Load& load,
                    Thermometers thermometers) {
  SmcValues values;
  const CoreKind slowest = machine.kinds().back();
  for (std::size_t i = 0; i < machine.clusters.size(); ++i) {
    const ClusterDescription& cluster = machine.clusters[i];
    const bool maySleep = machine.sleepingCoresReadLow && cluster.kind != slowest;
    for (std::size_t k = 0; k < cluster.sensors.smc.size(); ++k) {
      const bool sleeps = maySleep && load.clusters[i].cores[k % cluster.cores] < kAsleep;
      const double reading = thermometers.read(heat.clusters[i]);
      const double shown = sleeps ? kAsleepReading + 0.01 * (reading - heat.clusters[i]) : reading;
      values.emplace(cluster.sensors.smc[k], smcValue("flt ", shown));
    }
  }
  for (const std::string& key : machine.gpu.sensors.smc) {
    values.emplace(key, smcValue("flt ", thermometers.read(heat.gpu)));
  }
  return values;
}

std::vector<HidReading> hidReadings(const MachineDescription& machine, const MachineHeat& heat,
                                    Thermometers thermometers) {
  std::vector<HidReading> readings;
  const auto addSensor = [&](std::string_view name, double temperature) {
    readings.push_back(
        {.locationID = base::encodeFourCharCode(name), .value = thermometers.read(temperature)});
  };
  for (std::size_t i = 0; i < machine.clusters.size(); ++i) {
    for (const auto& name : machine.clusters[i].sensors.hid) addSensor(name, heat.clusters[i]);
  }
  for (const auto& name : machine.gpu.sensors.hid) addSensor(name, heat.gpu);
  for (const std::string_view name : kOtherHidSensors) {
    addSensor(name, kBoardTemperature);
    if (name == kHidSensorWithoutEvent) readings.back().value.reset();
  }
  return readings;
}

base::PropertyList integer(double value) {
  return base::PropertyList(static_cast<std::int64_t>(std::llround(value)));
}

RecordedAccelerator accelerator(const MachineDescription& machine, double active) {
  const auto memory = static_cast<double>(machine.memoryBytes);
  RecordedAccelerator gpu;
  gpu.vendorId = base::PropertyList(base::Bytes{0x6B, 0x10, 0, 0});  // Apple's
  gpu.model = base::PropertyList(machine.chip);
  gpu.performanceStatistics = base::PropertyList(base::PropertyListDictionary{
      {"In use system memory", integer(memory * (0.03 + 0.05 * active))},
      {"Alloc system memory", integer(memory * 0.2)},
      {"Device Utilization %", integer(100 * active)},
      {"Renderer Utilization %", integer(97 * active)},
      {"Tiler Utilization %", integer(60 * active)},
      {"recoveryCount", integer(0)},
  });
  return gpu;
}

}  // namespace

BuiltinSensors::BuiltinSensors(const MachineDescription& machine, std::uint64_t seed)
    : machine_(machine), seed_(seed), past_(machine, seed) {}

RecordingStep BuiltinSensors::stepAt(double time) {
  past_.moveTo(time);
  const Load load = loadAt(machine_, seed_, time);
  RecordingStep step;
  step.smc = smcValues(machine_, past_.heat(), load, Thermometers(seed_, kFirstSmcSensor, time));
  step.hid = hidReadings(machine_, past_.heat(), Thermometers(seed_, kFirstHidSensor, time));
  step.ticks = past_.ticks();
  step.accelerators = std::vector<RecordedAccelerator>{accelerator(machine_, load.gpu.active)};
  return step;
}

}  // namespace pallimo::adapters::simulated
