// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>

#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/recordings/simulated_system_controls.h"

namespace pallimo::adapters::simulated {

// The built-in machines. Clusters, processor numbers and frequency tables are those that
// powermetrics prints on machines with these chips; where no such document was at hand, the source
// says so. Peak powers are round figures of the size that it reports under full load. Sensor names
// are those under which Macs publish their temperatures; which chip has which of them is made up,
// with several a core on a chip of few cores and about forty on the large ones.

inline constexpr std::int64_t kGibibyte = std::int64_t{1} << 30;

MachineDescription macBookAirM1();     ///< 13-inch, 2020; the eight-core GPU
MachineDescription macBookProM1Pro();  ///< 14-inch, 2021
MachineDescription macBookProM2Pro();  ///< 14-inch, 2023; the larger M2 Pro
MachineDescription macStudioM2Ultra();
MachineDescription macMiniM4();
MachineDescription macBookProM4Max();  ///< 16-inch, 2024; the larger M4 Max
MachineDescription macBookProM5Pro();

/// The kernel variables of a built-in machine, as an Apple-silicon Mac answers them. Performance
/// level 0 is its fastest kind of core.
SystemControlValues systemControlsOf(const MachineDescription& machine);

}  // namespace pallimo::adapters::simulated
