// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_accelerator_registry.h"

#include <utility>

namespace pallimo::adapters::simulated {

namespace {

base::PropertyList propertiesOf(const RecordedAccelerator& accelerator) {
  base::PropertyListDictionary properties;
  const auto add = [&properties](const char* name, const std::optional<base::PropertyList>& value) {
    if (value) properties.emplace_back(name, *value);
  };
  add("vendor-id", accelerator.vendorId);
  add("model", accelerator.model);
  add("PerformanceStatistics", accelerator.performanceStatistics);
  return base::PropertyList(std::move(properties));
}

}  // namespace

std::optional<std::uint32_t> SimulatedAcceleratorRegistry::matchingServices(
    std::string_view className) {
  if (className != "IOAccelerator") return 0;
  auto step = now_.get();
  if (!step->accelerators) return std::nullopt;
  base::MutexLock lock(mutex_);
  return keep(Iterator{std::move(step)});
}

std::uint32_t SimulatedAcceleratorRegistry::next(std::uint32_t iterator) {
  base::MutexLock lock(mutex_);
  const auto found = objects_.find(iterator);
  if (found == objects_.end()) return 0;
  auto* walk = std::get_if<Iterator>(&found->second);
  if (walk == nullptr || walk->next >= walk->step->accelerators->size()) return 0;
  const RecordedAccelerator& accelerator = (*walk->step->accelerators)[walk->next++];
  return keep(Entry{{walk->step, &accelerator}, accelerator.readFailures});
}

std::optional<base::PropertyList> SimulatedAcceleratorRegistry::properties(std::uint32_t entry) {
  const auto accelerator = readable(entry);
  if (!accelerator) return std::nullopt;
  return propertiesOf(*accelerator);
}

void SimulatedAcceleratorRegistry::release(std::uint32_t object) {
  base::MutexLock lock(mutex_);
  objects_.erase(object);
}

std::size_t SimulatedAcceleratorRegistry::openHandles() const {
  base::MutexLock lock(mutex_);
  return objects_.size();
}

std::uint32_t SimulatedAcceleratorRegistry::keep(Object object) {
  do {
    ++lastHandle_;
  } while (lastHandle_ == 0 || objects_.count(lastHandle_) != 0);
  objects_.emplace(lastHandle_, std::move(object));
  return lastHandle_;
}

std::shared_ptr<const RecordedAccelerator> SimulatedAcceleratorRegistry::readable(
    std::uint32_t entry) {
  base::MutexLock lock(mutex_);
  const auto found = objects_.find(entry);
  if (found == objects_.end()) return nullptr;
  auto* held = std::get_if<Entry>(&found->second);
  if (held == nullptr) return nullptr;
  if (held->failuresLeft == 0) return held->accelerator;
  --held->failuresLeft;
  return nullptr;
}

}  // namespace pallimo::adapters::simulated
