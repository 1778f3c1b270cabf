// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/machines/builtin_machine.h"
#include "adapters/simulated/machines/builtin_sensors.h"
#include "adapters/simulated/machines/builtin_smc.h"
#include "adapters/simulated/recordings/simulated_system_controls.h"
#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/sensors/step_source.h"
#include "base/notification_centre.h"
#include "fakes/fake_sampling_gate.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "logging/log_file_data.h"
#include "logging/sample_rows.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "sampling/sg_power_metrics.h"

namespace pallimo::benchmarks {

/// The engine with the modules and the log that stand behind it, as the app wires them: a sample's
/// road from the helper's bytes to a line of the log. The sensors are those of a simulated machine
/// and stand still, so that making up their figures does not count. One thread.
class SampleRoad {
 public:
  /// `machine` outlives the road.
  explicit SampleRoad(const adapters::simulated::MachineDescription& machine)
      : controls_(adapters::simulated::systemControlsOf(machine)),
        sensors_(
            {adapters::simulated::smcOf(machine), adapters::simulated::builtinSteps(machine, 1),
             [](const std::string&) { return std::nullopt; }, 0},
            clock_) {
    engine_->setGate(gate_);
    engine_->setFanout({.power = power_,
                        .utilization = utilization_,
                        .frequency = frequency_,
                        .temperature = temperature_,
                        .log = rows_});
    rows_->addReceiver([this](const logging::LogRow& row) {
      line_ = logging::csvLine(logging::formatRow(row, clock_.now()));
    });
  }

  /// The whole of it: parse, modules, row, line, and the publication.
  const std::string& take(base::Bytes bytes) {
    engine_->handleResult(std::move(bytes));
    mainQueue_.run();
    return line_;
  }

  // Parts of it, for a sample that was taken.
  /// All four modules take the sample again.
  void feedModules() {
    power_->ingestSample();
    utilization_->ingestSample();
    frequency_->ingestSample();
    temperature_->ingestSample();
  }
  void publish() { notifications_.post(base::notification::kUpdateView); }

  modules::ModuleModelPower& power() { return *power_; }
  modules::ModuleModelFrequency& frequency() { return *frequency_; }
  modules::ModuleModelTemperature& temperature() { return *temperature_; }
  modules::ModuleModelUtilization& utilization() { return *utilization_; }
  logging::SampleRows::Models models() const {
    return {*power_, *frequency_, *temperature_, *utilization_};
  }
  const fakes::ManualClock& clock() const { return clock_; }

 private:
  fakes::ManualClock clock_;
  fakes::ManualMainQueue mainQueue_;
  base::NotificationCentre notifications_;
  fakes::MemoryUserDefaults defaults_;
  adapters::libplist::LibplistReader reader_;
  adapters::simulated::SimulatedSystemControls controls_;
  adapters::simulated::SimulatedSensors sensors_;
  std::shared_ptr<fakes::FakeSamplingGate> gate_ = std::make_shared<fakes::FakeSamplingGate>();
  std::shared_ptr<sampling::SGPowerMetrics> engine_ =
      sampling::SGPowerMetrics::create({mainQueue_, notifications_, defaults_, reader_});
  std::shared_ptr<modules::ModuleModelPower> power_ =
      modules::ModuleModelPower::create(notifications_, engine_);
  std::shared_ptr<modules::ModuleModelFrequency> frequency_ =
      modules::ModuleModelFrequency::create(notifications_, engine_);
  std::shared_ptr<modules::ModuleModelTemperature> temperature_ =
      modules::ModuleModelTemperature::create(
          notifications_, {controls_, sensors_.smcDevice(), sensors_.hidSensors()});
  std::shared_ptr<modules::ModuleModelUtilization> utilization_ =
      modules::ModuleModelUtilization::create(notifications_, engine_,
                                              {sensors_.processorTicks(), sensors_.accelerators()});
  std::shared_ptr<logging::SampleRows> rows_ =
      std::make_shared<logging::SampleRows>(clock_, models());
  std::string line_;
};

}  // namespace pallimo::benchmarks
