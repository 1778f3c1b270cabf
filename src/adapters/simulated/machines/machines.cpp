// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/machines.h"

#include <algorithm>

#include "adapters/simulated/machines/builtin_machine.h"
#include "adapters/simulated/text/json_node.h"

namespace pallimo::adapters::simulated {

namespace {

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isSameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowered(a) == lowered(b); });
}

/// "12 cores: E 4, P0 4, P1 4": the clusters' names without the word that they share.
std::string clusterText(const MachineDescription& machine) {
  std::string text = std::to_string(machine.coreCount()) + " cores:";
  const char* separator = " ";
  for (const ClusterDescription& cluster : machine.clusters) {
    const std::string name = cluster.name.substr(0, cluster.name.find('-'));
    text.append(separator).append(name).append(" ").append(std::to_string(cluster.cores));
    separator = ", ";
  }
  return text;
}

std::string gpuText(const MachineDescription& machine) {
  return std::to_string(machine.gpu.cores) + "-core GPU";
}

std::string temperatureText(const MachineDescription& machine) {
  return machine.temperatures == TemperatureSource::smc ? "temperatures: SMC" : "temperatures: HID";
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

}  // namespace

const std::vector<MachineDescription>& builtinMachines() {
  static const std::vector<MachineDescription> machines{
      macBookAirM1(), macBookProM1Pro(), macBookProM2Pro(), macStudioM2Ultra(),
      macMiniM4(),    macBookProM4Max(), macBookProM5Pro()};
  return machines;
}

const MachineDescription* findMachine(std::string_view name) {
  const auto& machines = builtinMachines();
  const auto found = std::find_if(
      machines.begin(), machines.end(),
      [name](const MachineDescription& machine) { return isSameName(machine.name, name); });
  return found == machines.end() ? nullptr : &*found;
}

const std::string& defaultMachineName() {
  static const std::string name = macBookProM2Pro().name;
  return name;
}

std::vector<std::string> machineList() {
  using Column = std::string (*)(const MachineDescription&);
  constexpr Column kColumns[] = {[](const MachineDescription& machine) { return machine.name; },
                                 [](const MachineDescription& machine) { return machine.chip; },
                                 clusterText, gpuText};
  std::vector<std::string> lines(builtinMachines().size());
  for (const Column column : kColumns) {
    std::size_t width = 0;
    for (const auto& machine : builtinMachines()) width = std::max(width, column(machine).size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      lines[i] += padded(column(builtinMachines()[i]), width) + "  ";
    }
  }
  for (std::size_t i = 0; i < lines.size(); ++i) lines[i] += temperatureText(builtinMachines()[i]);
  return lines;
}

std::string recordingLine(const std::string& name, const std::string& folder) {
  std::size_t width = 0;
  for (const auto& machine : builtinMachines()) width = std::max(width, machine.name.size());
  return padded(oneLine(name), width) + "  recording  " + oneLine(folder);
}

}  // namespace pallimo::adapters::simulated
