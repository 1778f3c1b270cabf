// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/machines/machine_description.h"
#include "base/bytes.h"

namespace pallimo::adapters::simulated {

/// What `system_profiler -xml SPDisplaysDataType` prints on the machine: an array of one dictionary
/// whose "_items" holds the graphics processor, its core count as text under "sppci_cores". The
/// same machine gives the same bytes. Any thread.
base::Bytes displaysReport(const MachineDescription& machine);

}  // namespace pallimo::adapters::simulated
