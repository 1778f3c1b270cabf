// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "adapters/simulated/machines/machine_description.h"
#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/simulation_file.h"
#include "base/bytes.h"
#include "ports/clock.h"
#include "ports/system_controls.h"

namespace pallimo::adapters::simulated {

/// What was asked of one run of powermetrics.
struct PowermetricsRequest {
  std::uint64_t number = 1;  ///< of the request within its connection, from one
  double now = 0;            ///< seconds since 1970 at the end of the sample, not sped up
  std::chrono::milliseconds period{1000};  ///< nominal, not sped up
  std::vector<std::string> samplers;       ///< "cpu_power"
};

/// How a simulated run of powermetrics ends.
struct PowermetricsRun {
  int status = 0;      ///< exit status
  base::Bytes output;  ///< what it prints to standard output
  std::string error;   ///< the line that it prints to standard error; empty: none
};

/// The Mac that a simulation names, built in or recorded: what the operating system answers in its
/// place. Constant after loading, so it may be copied; any thread.
class SimulatedMachine {
 public:
  /// The machine, or one line that says why there is none.
  static std::variant<SimulatedMachine, SimulationError> load(const Simulation& simulation);

  const std::string& name() const;
  std::unique_ptr<ports::SystemControls> systemControls() const;
  /// The machine's sensors, which need the machine itself no more. `clock` outlives them and runs
  /// `speed` times faster than real time since the simulation's start, as the app's clock does.
  std::unique_ptr<SimulatedSensors> sensors(const ports::Clock& clock) const;

  /// The line that refuses a sampler ("powermetrics: unrecognized sampler: X"), or nothing. A
  /// recording is given back whatever was asked for.
  std::string whyRefused(const std::vector<std::string>& samplers) const;

  /// The run's outcome. A recording gives the bytes of the request's step; a step without a
  /// document fails with status 1 and prints nothing. A built-in machine gives its document of that
  /// moment; its clock runs `speed` times faster than the real one since the simulation's start.
  PowermetricsRun powermetrics(const PowermetricsRequest& request) const;

 private:
  using Recorded = std::shared_ptr<const Recording>;
  using Kind = std::variant<const MachineDescription*, Recorded>;
  SimulatedMachine(Simulation simulation, Kind kind);

  PowermetricsRun builtinRun(const MachineDescription& machine,
                             const PowermetricsRequest& request) const;
  SimulatedSensors::Parts sensorParts() const;

  Simulation simulation_;
  Kind kind_;
};

}  // namespace pallimo::adapters::simulated
