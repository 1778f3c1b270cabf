// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string>

#include "modules/metric_history.h"
#include "modules/metric_model.h"
#include "modules/model_state.h"
#include "sensors/sgm1_sensor_temperature.h"

namespace pallimo::modules {

/// Temperatures of the CPU and the GPU, with histories. °C always; who shows them converts.
///
/// Threads as for ModuleModelPower. The sensors are read by the delivery thread, and without a
/// lock, since that takes a while.
class ModuleModelTemperature final : public MetricModel {
 public:
  /// The latest readings, °C.
  struct Figures {
    double CPUMin = 0;  ///< -1 when the CPU has no sensor
    double CPUMax = 0;  ///< likewise
    double CPUAvg = 0;  ///< not a number when the CPU has no sensor
    double GPUAvg = 0;  ///< not a number when the GPU has no sensor
  };

  /// Everything that the model holds at one moment; each history has at most 350 values.
  struct Snapshot : Figures {
    MetricHistory::Snapshot historicCPUMin;
    MetricHistory::Snapshot historicCPUMax;
    MetricHistory::Snapshot historicCPUAvg;
    MetricHistory::Snapshot historicGPUAvg;
  };

  /// Chooses the machine's source of temperatures, which on the SMC asks for all of its keys.
  /// Follows the notices of `notifications`, which outlives the model.
  static std::shared_ptr<ModuleModelTemperature> create(
      base::NotificationCentre& notifications,
      const sensors::SGM1SensorTemperature::Services& services);
  ~ModuleModelTemperature() override;

  /// An average of the GPU above 5 and below 10 °C is a glitch of its sensors: the history's newest
  /// value stands in for it, where there is one.
  void ingestSample() override;
  void clearData() override;

  Figures figures() const { return state_.figures(); }
  /// Made when it is asked for and shared until the next change. Never nullptr.
  std::shared_ptr<const Snapshot> snapshot() const { return state_.snapshot(); }

  /// The source; what it says of itself stays as it is. Any thread.
  const sensors::SGM1SensorTemperature& sensorTmp() const { return sensorTmp_; }
  /// The panel's help text, which names the source. Any thread.
  const std::string& tooltipTest() const { return tooltipTest_; }

 private:
  struct State {
    Figures figures;
    MetricHistory historicCPUMin;
    MetricHistory historicCPUMax;
    MetricHistory historicCPUAvg;
    MetricHistory historicGPUAvg;

    Snapshot snapshot() const;
  };

  explicit ModuleModelTemperature(const sensors::SGM1SensorTemperature::Services& services);

  Figures readFigures();

  sensors::SGM1SensorTemperature sensorTmp_;  // read from by the delivery thread alone
  const std::string tooltipTest_;

  ModelState<State, Figures, Snapshot> state_;
};

}  // namespace pallimo::modules
