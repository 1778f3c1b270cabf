// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_temperature.h"

#include <functional>

namespace pallimo::modules {

namespace {

using sensors::TemperatureReadings;

constexpr double kNoSensor = -1;

/// The value that no other one lies `beyond`. Nothing lies beyond what is not a number: as the
/// first value it stays, later it is passed over.
template <typename Beyond>
double extreme(const TemperatureReadings& readings, Beyond beyond) {
  if (readings.empty()) return kNoSensor;
  double found = readings.begin()->second;
  for (const auto& [name, value] : readings) {
    if (beyond(value, found)) found = value;
  }
  return found;
}

double average(const TemperatureReadings& readings) {
  double sum = 0;
  for (const auto& [name, value] : readings) sum += value;
  return sum / static_cast<double>(readings.size());
}

double withoutGlitch(double gpuAverage, const MetricHistory& history) {
  const bool isGlitch = 5 < gpuAverage && gpuAverage < 10;
  return isGlitch ? history.newest().value_or(gpuAverage) : gpuAverage;
}

}  // namespace

std::shared_ptr<ModuleModelTemperature> ModuleModelTemperature::create(
    base::NotificationCentre& notifications,
    const sensors::SGM1SensorTemperature::Services& services) {
  std::shared_ptr<ModuleModelTemperature> model(new ModuleModelTemperature(services));
  model->followNotices(notifications);
  return model;
}

ModuleModelTemperature::ModuleModelTemperature(
    const sensors::SGM1SensorTemperature::Services& services)
    : sensorTmp_(services),
      tooltipTest_(sensorTmp_.sensorType() == sensors::SGM1SensorTemperature::kSMC
                       ? "Temperature in Degrees Celcius. Data from SMC"
                       : "Temperature in Degrees Celcius. Data from IOHIDService") {}

ModuleModelTemperature::~ModuleModelTemperature() = default;

ModuleModelTemperature::Figures ModuleModelTemperature::readFigures() {
  const TemperatureReadings cpu = sensorTmp_.readCPUTemperatures();
  const TemperatureReadings gpu = sensorTmp_.readGPUTemperatures();
  Figures figures;
  figures.CPUMin = extreme(cpu, std::less<>());
  figures.CPUMax = extreme(cpu, std::greater<>());
  figures.CPUAvg = average(cpu);
  figures.GPUAvg = average(gpu);
  return figures;
}

void ModuleModelTemperature::ingestSample() {
  state_.commit([figures = readFigures()](State& state) {
    state.figures = figures;
    state.figures.GPUAvg = withoutGlitch(figures.GPUAvg, state.historicGPUAvg);
    state.historicCPUMin.insert(state.figures.CPUMin);
    state.historicCPUMax.insert(state.figures.CPUMax);
    state.historicCPUAvg.insert(state.figures.CPUAvg);
    state.historicGPUAvg.insert(state.figures.GPUAvg);
  });
}

void ModuleModelTemperature::clearData() {
  state_.clear();
  publish();
}

ModuleModelTemperature::Snapshot ModuleModelTemperature::State::snapshot() const {
  return {figures, historicCPUMin.snapshot(), historicCPUMax.snapshot(), historicCPUAvg.snapshot(),
          historicGPUAvg.snapshot()};
}

}  // namespace pallimo::modules
