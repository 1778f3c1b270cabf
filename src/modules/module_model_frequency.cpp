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
  figures.GPU =
      sampling::numberUnder("freq_hz", reader->getGPUFrequency()) / kMegahertzPerGigahertz;
  return figures;
}

void ModuleModelFrequency::ingestSample() {
  state_.commit([figures = readFigures()](State& state) {
    state.figures = figures;
    state.historicECore.insert(figures.ECore);
    state.historicPCore.insert(figures.PCore);
    state.historicGPU.insert(figures.GPU);
  });
}

void ModuleModelFrequency::clearData() {
  state_.clear();
  publish();
}

ModuleModelFrequency::Snapshot ModuleModelFrequency::State::snapshot() const {
  return {figures, historicECore.snapshot(), historicPCore.snapshot(), historicGPU.snapshot()};
}

}  // namespace pallimo::modules
