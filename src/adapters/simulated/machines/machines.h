// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/simulated/machines/machine_description.h"

namespace pallimo::adapters::simulated {

/// The machines that are built in, in the order in which they are listed. Constant; any thread.
const std::vector<MachineDescription>& builtinMachines();

/// The machine of that name, upper and lower case (of ASCII) alike; nullptr when there is none.
const MachineDescription* findMachine(std::string_view name);

/// The machine of a run that names none.
const std::string& defaultMachineName();

/// One line a machine, without line ends, columns aligned: name, chip, clusters, GPU, and who
/// answers for the temperatures.
std::vector<std::string> machineList();

/// The line that a recording of this name adds to the list, its name in the same column.
std::string recordingLine(const std::string& name, const std::string& folder);

}  // namespace pallimo::adapters::simulated
