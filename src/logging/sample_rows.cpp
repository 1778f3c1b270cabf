// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/sample_rows.h"

#include <utility>

namespace pallimo::logging {

namespace {

constexpr double kMegahertzPerGigahertz = 1000;
constexpr double kPercent = 100;

void fill(LogRow& row, const modules::ModuleModelPower& power) {
  const auto figures = power.figures();
  row.pkgPower = figures.PKGEnergy;
  row.cpuPower = figures.CPUEnergy;
  row.dramPower = figures.DRAMEnergy;
  row.anePower = figures.ANEEnergy;
  row.gpuPower = figures.GPUEnergy;
}

void fill(LogRow& row, const modules::ModuleModelFrequency& frequency) {
  const auto figures = frequency.figures();
  row.cpuECoreFrequency = figures.ECore * kMegahertzPerGigahertz;
  row.cpuPCoreFrequency = figures.PCore * kMegahertzPerGigahertz;
  row.gpuFrequency = figures.GPU * kMegahertzPerGigahertz;
}

void fill(LogRow& row, const modules::ModuleModelTemperature& temperature) {
  const auto figures = temperature.figures();
  row.cpuMinTmp = figures.CPUMin;
  row.cpuAvgTmp = figures.CPUAvg;
  row.cpuMaxTmp = figures.CPUMax;
  row.gpuAvgTmp = figures.GPUAvg;
}

void fill(SampleRow& row, const modules::ModuleModelUtilization& utilization) {
  const auto figures = utilization.figures();
  row.cpuUtilization = figures.utilization * kPercent;
  row.cpuEUtilization = figures.eutilization * kPercent;
  row.cpuPUtilization = figures.putilization * kPercent;
  row.gpuUtilization = figures.utilizationGPU * kPercent;
  row.isGPUTold = figures.isGPUTold;
}

}  // namespace

SampleRows::SampleRows(const ports::Clock& clock, const Models& models)
    : clock_(clock), models_(models) {}

void SampleRows::addReceiver(Receiver receiver) { receivers_.push_back(std::move(receiver)); }

void SampleRows::appendRow() {
  SampleRow row;
  row.time = clock_.now();
  fill(row, models_.power);
  fill(row, models_.frequency);
  fill(row, models_.temperature);
  fill(row, models_.utilization);
  for (const Receiver& receiver : receivers_) receiver(row);
}

}  // namespace pallimo::logging
