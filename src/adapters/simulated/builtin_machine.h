// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/machine_description.h"
#include "adapters/simulated/simulated_system_controls.h"

namespace pallimo::adapters::simulated {

/// A 14-inch MacBook Pro of 2023 with the larger M2 Pro. Clusters, processor numbers and frequency
/// tables are those that powermetrics prints on machines of this family; peak powers are round
/// figures of the size that it reports under full load.
MachineDescription macBookProM2Pro();

/// The kernel variables of a built-in machine, as an Apple-silicon Mac answers them.
SystemControlValues systemControlsOf(const MachineDescription& machine);

}  // namespace pallimo::adapters::simulated
