// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

#include "ports/accelerator_registry.h"

namespace pallimo::sensors {

/// The name of a GPU that does not tell its own.
inline constexpr const char* kUnknownGPU = "Unknown";

/// The GPU, as its driver publishes it.
struct GPUInfoRecord {
  std::string name;        ///< the model, or kUnknownGPU
  double utilisation = 0;  ///< fraction 0 to 1; 0 when the driver does not tell
  bool isUtilisationTold;  ///< served figures leave out what is not told
  bool operator==(const GPUInfoRecord&) const = default;
};

/// The GPU's name and utilisation, from the I/O registry. Stateless: every read walks the registry
/// anew. Any thread.
class SGSystemGPUInfo {
 public:
  /// `registry` outlives the object.
  explicit SGSystemGPUInfo(ports::AcceleratorRegistry& registry) : registry_(registry) {}

  /// The first accelerator of Apple's that has statistics; nothing when there is none. Reads every
  /// accelerator's properties, whoever made it, and blocks for as long as one of those reads fails:
  /// it is repeated at once and without a limit.
  std::optional<GPUInfoRecord> readGPUInfo() const;

 private:
  ports::AcceleratorRegistry& registry_;
};

}  // namespace pallimo::sensors
