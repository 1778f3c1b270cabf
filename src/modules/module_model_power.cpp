// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_power.h"

#include <utility>

namespace pallimo::modules {

namespace {

constexpr double kMilliwattsPerWatt = 1000;

double numberUnder(std::string_view key, const sampling::PowerValues& values) {
  const auto found = values.find(key);
  return found == values.end() ? 0 : found->second.numberOr(0);
}

}  // namespace

std::shared_ptr<ModuleModelPower> ModuleModelPower::create(
    base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader) {
  std::shared_ptr<ModuleModelPower> model(new ModuleModelPower(std::move(reader)));
  model->followNotices(notifications);
  model->publish();
  return model;
}

ModuleModelPower::ModuleModelPower(std::weak_ptr<const sampling::SampleReader> reader)
    : reader_(std::move(reader)) {}

ModuleModelPower::~ModuleModelPower() = default;

ModuleModelPower::Figures ModuleModelPower::readFigures() const {
  const auto reader = reader_.lock();
  if (!reader) return {};
  const sampling::PowerValues values = reader->getPowerValues();
  // Millijoules over the period divided by its milliseconds are watts; the package's figure is
  // milliwatts already.
  const double interval = reader->msSampling();
  Figures figures;
  figures.CPUEnergy = numberUnder("cpu_energy", values) / interval;
  figures.PKGEnergy = numberUnder("combined_power", values) / kMilliwattsPerWatt;
  figures.DRAMEnergy = numberUnder("dram_energy", values) / interval;
  figures.ANEEnergy = numberUnder("ane_energy", values) / interval;
  figures.GPUEnergy = numberUnder("gpu_energy", values) / interval;
  return figures;
}

void ModuleModelPower::ingestSample() {
  const Figures figures = readFigures();
  std::shared_ptr<const Snapshot> outdated;  // freed after the lock is let go
  base::MutexLock lock(mutex_);
  outdated.swap(state_.snapshot);
  state_.figures = figures;
  state_.historicCPU.insert(figures.CPUEnergy);
  state_.historicDRAM.insert(figures.DRAMEnergy);
  state_.historicANE.insert(figures.ANEEnergy);
  state_.historicPKG.insert(figures.PKGEnergy);
  state_.historicGPU.insert(figures.GPUEnergy);
  state_.axis = powerAxisFor(state_.historicPKG.largest());
}

void ModuleModelPower::clearData() {
  {
    State emptied;  // freed after the lock is let go, with a history of hours perhaps
    base::MutexLock lock(mutex_);
    emptied.axis = state_.axis;
    std::swap(state_, emptied);
  }
  publish();
}

ModuleModelPower::Figures ModuleModelPower::figures() const {
  base::MutexLock lock(mutex_);
  return state_.figures;
}

std::shared_ptr<const ModuleModelPower::Snapshot> ModuleModelPower::snapshot() const {
  base::MutexLock lock(mutex_);
  if (!state_.snapshot) {
    state_.snapshot = std::make_shared<const Snapshot>(Snapshot{
        state_.figures, state_.axis.labels, state_.axis.maxValue, state_.historicCPU.snapshot(),
        state_.historicDRAM.snapshot(), state_.historicANE.snapshot(),
        state_.historicPKG.snapshot(), state_.historicGPU.snapshot()});
  }
  return state_.snapshot;
}

}  // namespace pallimo::modules
