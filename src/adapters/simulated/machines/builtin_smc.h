// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/recordings/recording.h"

namespace pallimo::adapters::simulated {

/// The SMC of a built-in machine: about 300 keys in the SMC's own order (of their bytes) with
/// types, sizes and their values at rest, "#KEY" first. A pure function; any thread.
RecordedSmc smcOf(const MachineDescription& machine);

}  // namespace pallimo::adapters::simulated
