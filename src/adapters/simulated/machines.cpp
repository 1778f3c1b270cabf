// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines.h"

#include <algorithm>

#include "adapters/simulated/builtin_machine.h"

namespace pallimo::adapters::simulated {

namespace {

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isSameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowered(a) == lowered(b); });
}

std::string clusterText(const MachineDescription& machine) {
  std::string text = std::to_string(machine.coreCount()) + " cores:";
  const char* separator = " ";
  for (const ClusterDescription& cluster : machine.clusters) {
    text.append(separator).append(cluster.name).append(" ").append(std::to_string(cluster.cores));
    separator = ", ";
  }
  return text;
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

}  // namespace

const std::vector<MachineDescription>& builtinMachines() {
  static const std::vector<MachineDescription> machines{macBookProM2Pro()};
  return machines;
}

const MachineDescription* findMachine(std::string_view name) {
  const auto& machines = builtinMachines();
  const auto found = std::find_if(
      machines.begin(), machines.end(),
      [name](const MachineDescription& machine) { return isSameName(machine.name, name); });
  return found == machines.end() ? nullptr : &*found;
}

const std::string& defaultMachineName() { return builtinMachines().front().name; }

std::vector<std::string> machineList() {
  std::size_t names = 0;
  std::size_t chips = 0;
  std::size_t clusters = 0;
  for (const MachineDescription& machine : builtinMachines()) {
    names = std::max(names, machine.name.size());
    chips = std::max(chips, machine.chip.size());
    clusters = std::max(clusters, clusterText(machine).size());
  }
  std::vector<std::string> lines;
  for (const MachineDescription& machine : builtinMachines()) {
    lines.push_back(padded(machine.name, names) + "  " + padded(machine.chip, chips) + "  " +
                    padded(clusterText(machine), clusters) + "  " +
                    std::to_string(machine.gpu.cores) + "-core GPU");
  }
  return lines;
}

}  // namespace pallimo::adapters::simulated
