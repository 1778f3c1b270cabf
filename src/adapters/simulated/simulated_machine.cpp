// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/simulated_machine.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "adapters/simulated/machines/builtin_machine.h"
#include "adapters/simulated/machines/builtin_smc.h"
#include "adapters/simulated/machines/displays_report.h"
#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/machines/powermetrics_document.h"
#include "adapters/simulated/recordings/recording_reader.h"
#include "adapters/simulated/text/json_node.h"

namespace pallimo::adapters::simulated {

namespace {

/// The first name that enables no sampler; empty when all do.
std::string enableAll(Samplers& samplers, const std::vector<std::string>& names) {
  const auto unknown = std::find_if(
      names.begin(), names.end(), [&samplers](const auto& name) { return !samplers.enable(name); });
  return unknown == names.end() ? "" : "powermetrics: unrecognized sampler: " + *unknown;
}

PowermetricsRun recordedRun(const Recording& recording, std::uint64_t request) {
  const std::size_t step = recording.stepForRequest(request);
  const auto& file = recording.steps[step].powermetrics;
  if (!file) return {.status = 1, .output = {}, .error = {}};
  auto read = recording.documentBytes(step);
  if (const auto* error = std::get_if<FileError>(&read)) {
    return {.status = 1,
            .output = {},
            .error = "powermetrics: " + oneLine(*file) + ": " + error->message};
  }
  return {.status = 0, .output = std::get<base::Bytes>(std::move(read)), .error = {}};
}

}  // namespace

SimulatedMachine::SimulatedMachine(Simulation simulation, Kind kind)
    : simulation_(std::move(simulation)), kind_(std::move(kind)) {}

std::variant<SimulatedMachine, SimulationError> SimulatedMachine::load(
    const Simulation& simulation) {
  if (!simulation.recording.empty()) {
    auto read = readRecording(simulation.recording);
    if (const auto* error = std::get_if<RecordingError>(&read)) {
      return SimulationError{oneLine(simulation.recording) + "/" + error->message};
    }
    return SimulatedMachine(
        simulation, std::make_shared<const Recording>(std::get<Recording>(std::move(read))));
  }
  const MachineDescription* machine = findMachine(simulation.machine);
  if (machine == nullptr) {
    return SimulationError{"no machine is named " + quotedText(simulation.machine)};
  }
  return SimulatedMachine(simulation, machine);
}

const std::string& SimulatedMachine::name() const {
  if (const auto* recording = std::get_if<Recorded>(&kind_)) return (*recording)->name;
  return std::get<const MachineDescription*>(kind_)->name;
}

std::unique_ptr<ports::SystemControls> SimulatedMachine::systemControls() const {
  if (const auto* recording = std::get_if<Recorded>(&kind_)) {
    return std::make_unique<SimulatedSystemControls>((*recording)->sysctl);
  }
  return std::make_unique<SimulatedSystemControls>(
      systemControlsOf(*std::get<const MachineDescription*>(kind_)));
}

std::unique_ptr<SimulatedSensors> SimulatedMachine::sensors(const ports::Clock& clock) const {
  return std::make_unique<SimulatedSensors>(sensorParts(), clock);
}

SimulatedSensors::Parts SimulatedMachine::sensorParts() const {
  if (const auto* recorded = std::get_if<Recorded>(&kind_)) {
    const auto reports = [recording = *recorded](const std::string& dataType) {
      return recording->reportBytes(dataType);
    };
    return {(*recorded)->smc, recordedSteps(*recorded), reports, simulation_.startTime};
  }
  const MachineDescription& machine = *std::get<const MachineDescription*>(kind_);
  const auto reports = [&machine](const std::string& dataType) {
    const bool isKnown = dataType == "SPDisplaysDataType";
    return isKnown ? std::optional<base::Bytes>(displaysReport(machine)) : std::nullopt;
  };
  return {smcOf(machine), builtinSteps(machine, simulation_.seed), reports, simulation_.startTime};
}

std::string SimulatedMachine::whyRefused(const std::vector<std::string>& samplers) const {
  if (std::holds_alternative<Recorded>(kind_)) return "";
  Samplers ignored;
  return enableAll(ignored, samplers);
}

PowermetricsRun SimulatedMachine::powermetrics(const PowermetricsRequest& request) const {
  if (const auto* recording = std::get_if<Recorded>(&kind_)) {
    return recordedRun(**recording, request.number);
  }
  return builtinRun(*std::get<const MachineDescription*>(kind_), request);
}

PowermetricsRun SimulatedMachine::builtinRun(const MachineDescription& machine,
                                             const PowermetricsRequest& request) const {
  DocumentRequest document;
  document.seed = simulation_.seed;
  document.startTime = simulation_.startTime;
  // A clock that was set back must not lead before the beginning.
  document.time = std::max(0.0, request.now - simulation_.startTime) * simulation_.speed;
  document.period = request.period;
  if (std::string refused = enableAll(document.samplers, request.samplers); !refused.empty()) {
    return {.status = 1, .output = {}, .error = std::move(refused)};
  }
  return {.status = 0, .output = powermetricsDocument(machine, document), .error = {}};
}

}  // namespace pallimo::adapters::simulated
