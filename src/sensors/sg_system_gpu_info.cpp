// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/sg_system_gpu_info.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace pallimo::sensors {

namespace {

constexpr std::uint32_t kVendorApple = 4203;  // 0x106B, Apple's number on the PCI bus
constexpr double kPercent = 100.0;

/// Reads until it succeeds, since an entry that is skipped would show a GPU at rest; the driver of
/// an entry that is there is expected to answer in the end. The entry is held meanwhile, so that no
/// read meets a dead handle.
base::PropertyList propertiesOf(ports::AcceleratorRegistry& registry, std::uint32_t entry) {
  std::optional<base::PropertyList> properties;
  while (!properties) properties = registry.properties(entry);
  return std::move(*properties);
}

bool isApples(const base::PropertyList& properties) {
  const base::PropertyList* value = properties.find("vendor-id");
  const base::Bytes* bytes = value == nullptr ? nullptr : value->data();
  if (bytes == nullptr || bytes->size() != 4) return false;
  std::uint32_t vendor = 0;
  for (auto byte = bytes->rbegin(); byte != bytes->rend(); ++byte) vendor = (vendor << 8) | *byte;
  return vendor == kVendorApple;
}

/// The properties of all of Apple's accelerators, in the registry's order.
std::vector<base::PropertyList> applesAccelerators(ports::AcceleratorRegistry& registry) {
  std::vector<base::PropertyList> kept;
  const std::uint32_t iterator = registry.matchingServices("IOAccelerator").value_or(0);
  if (iterator == 0) return kept;
  while (const std::uint32_t entry = registry.next(iterator)) {
    base::PropertyList properties = propertiesOf(registry, entry);
    if (isApples(properties)) kept.push_back(std::move(properties));
    registry.release(entry);
  }
  registry.release(iterator);
  return kept;
}

std::string nameIn(const base::PropertyList& accelerator) {
  const base::PropertyList* model = accelerator.find("model");
  return model != nullptr && model->text() != nullptr ? *model->text() : kUnknownGPU;
}

GPUInfoRecord recordOf(const base::PropertyList& accelerator,
                       const base::PropertyList& statistics) {
  const base::PropertyList* percent = statistics.find("Device Utilization %");
  const bool isTold = percent != nullptr && percent->isNumber();
  return {nameIn(accelerator), isTold ? percent->numberOr(0) / kPercent : 0, isTold};
}

}  // namespace

std::optional<GPUInfoRecord> SGSystemGPUInfo::readGPUInfo() const {
  for (const base::PropertyList& accelerator : applesAccelerators(registry_)) {
    const base::PropertyList* statistics = accelerator.find("PerformanceStatistics");
    if (statistics == nullptr || statistics->dictionary() == nullptr) continue;
    return recordOf(accelerator, *statistics);
  }
  return std::nullopt;
}

}  // namespace pallimo::sensors
