// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_power.h"

#include <utility>

namespace pallimo::modules {

namespace {

constexpr double kMilliwattsPerWatt = 1000;

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
  using sampling::numberUnder;
  Figures figures;
  figures.CPUEnergy = numberUnder("cpu_energy", values) / interval;
  figures.PKGEnergy = numberUnder("combined_power", values) / kMilliwattsPerWatt;
  figures.DRAMEnergy = numberUnder("dram_energy", values) / interval;
  figures.ANEEnergy = numberUnder("ane_energy", values) / interval;
  figures.GPUEnergy = numberUnder("gpu_energy", values) / interval;
  return figures;
}

void ModuleModelPower::ingestSample() {
  state_.commit([figures = readFigures()](State& state) {
    state.figures = figures;
    state.historicCPU.insert(figures.CPUEnergy);
    state.historicDRAM.insert(figures.DRAMEnergy);
    state.historicANE.insert(figures.ANEEnergy);
    state.historicPKG.insert(figures.PKGEnergy);
    state.historicGPU.insert(figures.GPUEnergy);
    state.axis = powerAxisFor(state.historicPKG.largest());
  });
}

void ModuleModelPower::clearData() {
  state_.clear([](const State& former, State& emptied) { emptied.axis = former.axis; });
  publish();
}

ModuleModelPower::Snapshot ModuleModelPower::State::snapshot() const {
  return {figures,
          axis.labels,
          axis.maxValue,
          historicCPU.snapshot(),
          historicDRAM.snapshot(),
          historicANE.snapshot(),
          historicPKG.snapshot(),
          historicGPU.snapshot()};
}

}  // namespace pallimo::modules
