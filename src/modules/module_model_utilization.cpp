// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_utilization.h"

#include <string_view>
#include <utility>

namespace pallimo::modules {

namespace {

double busyFractionOf(std::string_view cluster, const ClusterTicks& averages) {
  const auto found = averages.find(cluster);
  // On purpose: nothing is known to be idle.
  return found == averages.end() ? 1 : busyFraction(found->second);
}

}  // namespace

std::shared_ptr<ModuleModelUtilization> ModuleModelUtilization::create(
    base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader,
    const Services& services) {
  std::shared_ptr<ModuleModelUtilization> model(
      new ModuleModelUtilization(std::move(reader), services));
  model->followNotices(notifications);
  return model;
}

ModuleModelUtilization::ModuleModelUtilization(std::weak_ptr<const sampling::SampleReader> reader,
                                               const Services& services)
    : reader_(std::move(reader)), ticks_(services.ticks), gpu_(services.accelerators) {}

ModuleModelUtilization::~ModuleModelUtilization() = default;

TickSnapshot ModuleModelUtilization::ticksSinceLastTime() {
  TickSnapshot current = takeTickSnapshot(ticks_);
  TickSnapshot deltas = tickDeltas(prevSnapShot_, current);
  prevSnapShot_ = std::move(current);
  return deltas;
}

ModuleModelUtilization::Figures ModuleModelUtilization::readFigures() {
  const auto reader = reader_.lock();
  if (cpuE_P_.empty() && reader) cpuE_P_ = reader->getClusterCPUs();
  const TickSnapshot ticks = ticksSinceLastTime();
  Figures figures;
  figures.utilization = busyFraction(tickAverage(ticks));
  if (!cpuE_P_.empty()) {
    const ClusterTicks averages = clusterTickAverages(ticks, cpuE_P_);
    figures.eutilization = busyFractionOf("E-Cluster", averages);
    figures.putilization = busyFractionOf("P-Cluster", averages);
  }
  if (const auto gpu = gpu_.readGPUInfo()) {
    figures.utilizationGPU = gpu->utilisation;
    figures.isGPUTold = gpu->isUtilisationTold;
  }
  return figures;
}

void ModuleModelUtilization::ingestSample() {
  state_.commit([figures = readFigures()](State& state) {
    state.figures = figures;
    state.historic.insert(figures.utilization);
    state.historice.insert(figures.eutilization);
    state.historicp.insert(figures.putilization);
    state.historicGPU.insert(figures.utilizationGPU);
  });
}

void ModuleModelUtilization::clearData() {
  state_.clear();
  publish();
}

ModuleModelUtilization::Snapshot ModuleModelUtilization::State::snapshot() const {
  return {figures, historic.snapshot(), historice.snapshot(), historicp.snapshot(),
          historicGPU.snapshot()};
}

}  // namespace pallimo::modules
