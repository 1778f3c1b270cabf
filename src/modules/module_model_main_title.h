// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/observable.h"
#include "ports/accelerator_registry.h"
#include "ports/program_launcher.h"
#include "ports/property_list_reader.h"
#include "ports/system_controls.h"

namespace pallimo::modules {

/// What machine this is, for the window's title line. Read once when it is created and constant
/// from then on; any thread.
class ModuleModelMainTitle final : public base::Observable {
 public:
  /// Used by create() alone.
  struct Services {
    const ports::SystemControls& controls;
    ports::AcceleratorRegistry& accelerators;
    ports::ProgramLauncher& launcher;
    const ports::PropertyListReader& propertyLists;
  };

  /// Reads everything and publishes once. Blocks while the system profiler runs. A machine that
  /// does not tell its chip's name stops the program.
  static std::shared_ptr<ModuleModelMainTitle> create(const Services& services);

  /// The chip, "Apple M2 Pro".
  const std::string& appleSiliconName() const { return values_.appleSiliconName; }
  /// The GPU's model, or sensors::kUnknownGPU.
  const std::string& gpuName() const { return values_.gpuName; }
  /// Performance level 1 of the kernel, by fixed pairing; 4 when it does not tell.
  std::int64_t numberOfECore() const { return values_.numberOfECore; }
  /// Performance level 0; 4 when the kernel does not tell.
  std::int64_t numberOfPCore() const { return values_.numberOfPCore; }
  /// -1 when unknown.
  std::int64_t numberOfGPUCore() const { return values_.numberOfGPUCore; }

 private:
  // In the order of reading.
  struct Values {
    std::string appleSiliconName;
    std::string gpuName;
    std::int64_t numberOfECore;
    std::int64_t numberOfPCore;
    std::int64_t numberOfGPUCore;
  };

  explicit ModuleModelMainTitle(const Services& services);

  static Values read(const Services& services);

  const Values values_;
};

}  // namespace pallimo::modules
