// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_frequency.h"

#include <string_view>
#include <utility>

namespace pallimo::modules {

namespace {

// The GPU's figure is taken as megahertz too, in spite of its key's name.
constexpr double kMegahertzPerGigahertz = 1000;

double megahertzUnder(std::string_view key, const sampling::ClusterFrequencies& frequencies) {
  const auto found = frequencies.find(key);
  return found == frequencies.end() ? 0 : found->second;
}

double megahertzUnder(std::string_view key, const sampling::GPUFrequency& readings) {
  const auto found = readings.find(key);
  return found == readings.end() ? 0 : found->second.numberOr(0);
}

}  // namespace

std::shared_ptr<ModuleModelFrequency> ModuleModelFrequency::create(
    base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader) {
  std::shared_ptr<ModuleModelFrequency> model(new ModuleModelFrequency(std::move(reader)));
  model->followNotices(notifications);
  return model;
}

ModuleModelFrequency::ModuleModelFrequency(std::weak_ptr<const sampling::SampleReader> reader)
    : reader_(std::move(reader)) {}

ModuleModelFrequency::~ModuleModelFrequency() = default;

ModuleModelFrequency::Figures ModuleModelFrequency::readFigures() const {
  const auto reader = reader_.lock();
  if (!reader) return {};
  const sampling::ClusterFrequencies clusters = reader->getClusterFrequencies();
  Figures figures;
  figures.ECore = megahertzUnder("E-Cluster", clusters) / kMegahertzPerGigahertz;
  figures.PCore = megahertzUnder("P-Cluster", clusters) / kMegahertzPerGigahertz;
  figures.GPU = megahertzUnder("freq_hz", reader->getGPUFrequency()) / kMegahertzPerGigahertz;
  return figures;
}

void ModuleModelFrequency::ingestSample() {
  const Figures figures = readFigures();
  std::shared_ptr<const Snapshot> outdated;  // freed after the lock is let go
  base::MutexLock lock(mutex_);
  outdated.swap(state_.snapshot);
  state_.figures = figures;
  state_.historicECore.insert(figures.ECore);
  state_.historicPCore.insert(figures.PCore);
  state_.historicGPU.insert(figures.GPU);
}

void ModuleModelFrequency::clearData() {
  {
    State emptied;  // freed after the lock is let go
    base::MutexLock lock(mutex_);
    std::swap(state_, emptied);
  }
  publish();
}

ModuleModelFrequency::Figures ModuleModelFrequency::figures() const {
  base::MutexLock lock(mutex_);
  return state_.figures;
}

std::shared_ptr<const ModuleModelFrequency::Snapshot> ModuleModelFrequency::snapshot() const {
  base::MutexLock lock(mutex_);
  if (!state_.snapshot) {
    state_.snapshot = std::make_shared<const Snapshot>(
        Snapshot{state_.figures, state_.historicECore.snapshot(), state_.historicPCore.snapshot(),
                 state_.historicGPU.snapshot()});
  }
  return state_.snapshot;
}

}  // namespace pallimo::modules
