// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "tools/powermetrics/powermetrics_tool.h"

#include <charconv>
#include <cstdint>
#include <variant>

#include "adapters/simulated/simulated_machine.h"
#include "adapters/simulated/simulation_file.h"
#include "tools/powermetrics/powermetrics_arguments.h"

namespace pallimo::tools::powermetrics {

namespace simulated = adapters::simulated;

namespace {

/// One line for standard error, without the program's name.
struct Failure {
  std::string message;
};

std::variant<std::uint64_t, Failure> requestNumber(const ToolSurroundings& surroundings) {
  const auto text = surroundings.environment(simulated::kRequestVariable);
  if (!text) return Failure{std::string(simulated::kRequestVariable) + " is not set"};
  std::uint64_t number = 0;
  const char* end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, number);
  if (error != std::errc() || stop != end || number == 0) {
    return Failure{std::string(simulated::kRequestVariable) + " is not a number from 1"};
  }
  return number;
}

std::variant<simulated::Simulation, Failure> simulation(const ToolSurroundings& surroundings) {
  const auto path = surroundings.environment(simulated::kSimulationVariable);
  if (!path) return Failure{std::string(simulated::kSimulationVariable) + " is not set"};
  const auto read = simulated::readSimulation(*path);
  if (const auto* error = std::get_if<simulated::SimulationError>(&read)) {
    return Failure{error->message};
  }
  return std::get<simulated::Simulation>(read);
}

int fail(const ToolSurroundings& surroundings, const std::string& message) {
  surroundings.writeError("powermetrics: " + message);
  return kFailure;
}

int help(const ToolSurroundings& surroundings) {
  return surroundings.write({kHelpText.begin(), kHelpText.end()}) ? kSuccess : kFailure;
}

int sample(const simulated::SimulatedMachine& machine, const Arguments& arguments,
           std::uint64_t request, double speed, const ToolSurroundings& surroundings) {
  if (const std::string refused = machine.whyRefused(arguments.samplers); !refused.empty()) {
    surroundings.writeError(refused);
    return kFailure;
  }
  const std::chrono::duration<double> nominal = arguments.period;
  if (!surroundings.wait(nominal / speed)) return kFailure;
  const auto run = machine.powermetrics({.number = request,
                                         .now = surroundings.now(),
                                         .period = arguments.period,
                                         .samplers = arguments.samplers});
  if (!run.error.empty()) surroundings.writeError(run.error);
  if (!run.output.empty() && !surroundings.write(run.output)) return kFailure;
  return run.status;
}

}  // namespace

int runPowermetrics(const std::vector<std::string>& arguments,
                    const ToolSurroundings& surroundings) {
  if (arguments == std::vector<std::string>{"--help"}) return help(surroundings);
  const auto parsed = parseArguments(arguments);
  if (std::holds_alternative<UsageError>(parsed)) {
    surroundings.writeError(kUsage);
    return kUsageFailure;
  }
  const auto named = simulation(surroundings);
  if (const auto* failure = std::get_if<Failure>(&named)) {
    return fail(surroundings, failure->message);
  }
  const auto number = requestNumber(surroundings);
  if (const auto* failure = std::get_if<Failure>(&number)) {
    return fail(surroundings, failure->message);
  }
  const auto& what = std::get<simulated::Simulation>(named);
  const auto machine = simulated::SimulatedMachine::load(what);
  if (const auto* error = std::get_if<simulated::SimulationError>(&machine)) {
    return fail(surroundings, error->message);
  }
  return sample(std::get<simulated::SimulatedMachine>(machine), std::get<Arguments>(parsed),
                std::get<std::uint64_t>(number), what.speed, surroundings);
}

}  // namespace pallimo::tools::powermetrics
