// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "modules/metric_history.h"
#include "modules/metric_model.h"
#include "modules/model_state.h"
#include "sampling/sample_reader.h"

namespace pallimo::modules {

/// Clock frequencies of the efficiency cores, the performance cores and the GPU, with histories.
/// Gigahertz, as everywhere above the sample's own tables. The graph's axis is the panel's.
///
/// Threads as for ModuleModelPower: written by the delivery thread and the main thread, each commit
/// at once, read by any thread.
class ModuleModelFrequency final : public MetricModel {
 public:
  /// The latest readings, GHz.
  struct Figures {
    double ECore = 0;
    double PCore = 0;
    double GPU = 0;
  };

  /// Everything that the model holds at one moment; each history has at most 350 values.
  struct Snapshot : Figures {
    MetricHistory::Snapshot historicECore;
    MetricHistory::Snapshot historicPCore;
    MetricHistory::Snapshot historicGPU;
  };

  /// Follows the notices of `notifications`, which outlives the model.
  static std::shared_ptr<ModuleModelFrequency> create(
      base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader);
  ~ModuleModelFrequency() override;

  /// A reading that is absent or not a number counts as 0 and enters its history: the GPU of a
  /// sample without GPU figures, the performance cores of a machine that has none.
  void ingestSample() override;
  void clearData() override;

  Figures figures() const { return state_.figures(); }
  /// Made when it is asked for and shared until the next change. Never nullptr.
  std::shared_ptr<const Snapshot> snapshot() const { return state_.snapshot(); }

 private:
  struct State {
    Figures figures;
    MetricHistory historicECore;
    MetricHistory historicPCore;
    MetricHistory historicGPU;

    Snapshot snapshot() const;
  };

  explicit ModuleModelFrequency(std::weak_ptr<const sampling::SampleReader> reader);

  Figures readFigures() const;

  const std::weak_ptr<const sampling::SampleReader> reader_;
  ModelState<State, Figures, Snapshot> state_;
};

}  // namespace pallimo::modules
