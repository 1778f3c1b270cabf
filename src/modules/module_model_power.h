// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "modules/metric_history.h"
#include "modules/metric_model.h"
#include "modules/model_state.h"
#include "modules/power_axis.h"
#include "sampling/sample_reader.h"

namespace pallimo::modules {

/// Power of the package, CPU, GPU, DRAM and neural engine, with histories and the graph's axis.
///
/// Written by the delivery thread (ingestSample) and the main thread (clearData), read by any
/// thread. Both writers commit everything at once, so that no reader sees half of a sample; what
/// clearData meets half-way is either wiped or begins the new histories, never torn.
class ModuleModelPower final : public MetricModel {
 public:
  /// The latest readings, W. The fields keep the name "Energy" of the sample's own figures.
  struct Figures {
    double CPUEnergy = 0;
    double DRAMEnergy = 0;
    double ANEEnergy = 0;
    double GPUEnergy = 0;
    double PKGEnergy = 0;  ///< the whole package
  };

  /// Everything that the model holds at one moment.
  struct Snapshot : Figures {
    std::span<const std::string_view> axisLabels;  ///< highest first, as in PowerAxis
    double axisMaxValue = 0;                       ///< W; 0 before the first sample
    MetricHistory::Snapshot historicCPU;
    MetricHistory::Snapshot historicDRAM;
    MetricHistory::Snapshot historicANE;  ///< the one history that is not cut to 350 values
    MetricHistory::Snapshot historicPKG;  ///< decides the axis, alone
    MetricHistory::Snapshot historicGPU;
  };

  /// Follows the notices of `notifications`, which outlives the model, and publishes once.
  static std::shared_ptr<ModuleModelPower> create(
      base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader);
  ~ModuleModelPower() override;

  /// A reading that is absent or not a number counts as 0, and so does every reading without a
  /// reader.
  void ingestSample() override;
  /// The axis keeps its last labels until the next sample.
  void clearData() override;

  Figures figures() const { return state_.figures(); }
  /// Made when it is asked for and shared until the next change. Never nullptr.
  std::shared_ptr<const Snapshot> snapshot() const { return state_.snapshot(); }

 private:
  struct State {
    Figures figures;
    PowerAxis axis = initialPowerAxis();
    MetricHistory historicCPU;
    MetricHistory historicDRAM;
    // Kept whole until it is cleared, on purpose: one value a sample.
    MetricHistory historicANE{MetricHistory::kUnbounded};
    MetricHistory historicPKG;
    MetricHistory historicGPU;

    Snapshot snapshot() const;
  };

  explicit ModuleModelPower(std::weak_ptr<const sampling::SampleReader> reader);

  Figures readFigures() const;

  const std::weak_ptr<const sampling::SampleReader> reader_;
  ModelState<State, Figures, Snapshot> state_;
};

}  // namespace pallimo::modules
