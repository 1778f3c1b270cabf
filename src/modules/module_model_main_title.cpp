// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/module_model_main_title.h"

#include "sensors/sg_system_gpu_info.h"
#include "sensors/sg_system_info.h"
#include "sensors/sg_system_profiler.h"

namespace pallimo::modules {

namespace {

// Of a kernel without performance levels; the M1's.
constexpr std::int32_t kCoresOfUnknownLevel = 4;

std::string gpuNameIn(ports::AcceleratorRegistry& accelerators) {
  const auto gpu = sensors::SGSystemGPUInfo(accelerators).readGPUInfo();
  return gpu ? gpu->name : sensors::kUnknownGPU;
}

}  // namespace

std::shared_ptr<ModuleModelMainTitle> ModuleModelMainTitle::create(const Services& services) {
  std::shared_ptr<ModuleModelMainTitle> model(new ModuleModelMainTitle(services));
  // To nobody yet: all that is observed publishes when it is there.
  model->publish();
  return model;
}

ModuleModelMainTitle::ModuleModelMainTitle(const Services& services) : values_(read(services)) {}

ModuleModelMainTitle::Values ModuleModelMainTitle::read(const Services& services) {
  const sensors::SGSystemInfo info(services.controls);
  const sensors::SGSystemProfiler profiler(services.launcher, services.propertyLists);
  // Braces: read in this order.
  return {info.cpuBrandString(), gpuNameIn(services.accelerators),
          info.efficiencyCores().value_or(kCoresOfUnknownLevel),
          info.performanceCores().value_or(kCoresOfUnknownLevel), profiler.gpuCoreCount()};
}

}  // namespace pallimo::modules
