// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "adapters/simulated/recordings/recording.h"
#include "adapters/simulated/sensors/current_step.h"
#include "adapters/simulated/sensors/simulated_accelerator_registry.h"
#include "adapters/simulated/sensors/simulated_hid_sensors.h"
#include "adapters/simulated/sensors/simulated_processor_ticks.h"
#include "adapters/simulated/sensors/simulated_program_launcher.h"
#include "adapters/simulated/sensors/simulated_smc_device.h"
#include "adapters/simulated/sensors/step_source.h"
#include "ports/clock.h"
#include "ports/helper_connection.h"

namespace pallimo::adapters::simulated {

/// Everything that can be read on a simulated machine beside the helper's documents. All sensors
/// answer with one step, which the results of the followed connections move. Any thread, except
/// where a port says otherwise.
class SimulatedSensors {
 public:
  /// What a machine is made of.
  struct Parts {
    RecordedSmc smc;
    std::unique_ptr<StepSource> steps;
    SimulatedProgramLauncher::Reports reports;
    double startTime = 0;  ///< seconds since 1970 on the clock, when the simulated time began
  };

  /// `clock` outlives the object and runs at the speed of the simulation.
  SimulatedSensors(Parts parts, const ports::Clock& clock);
  SimulatedSensors(const SimulatedSensors&) = delete;
  SimulatedSensors& operator=(const SimulatedSensors&) = delete;

  ports::SmcDevice& smcDevice() { return smcDevice_; }
  ports::HidSensors& hidSensors() { return hidSensors_; }
  ports::AcceleratorRegistry& accelerators() { return accelerators_; }
  ports::ProcessorTicks& processorTicks() { return processorTicks_; }
  ports::ProgramLauncher& programLauncher() { return programLauncher_; }

  /// A connector whose connections are those of `inner`, and whose results move the sensors to
  /// their moment before the app receives them: the n-th result of a connection to that of request
  /// n. `inner` and `clock` outlive it; it may outlive the sensors.
  std::unique_ptr<ports::HelperConnector> follow(ports::HelperConnector& inner);

 private:
  const std::shared_ptr<CurrentStep> now_;
  SimulatedSmcDevice smcDevice_;
  SimulatedHidSensors hidSensors_;
  SimulatedAcceleratorRegistry accelerators_;
  SimulatedProcessorTicks processorTicks_;
  SimulatedProgramLauncher programLauncher_;
};

}  // namespace pallimo::adapters::simulated
