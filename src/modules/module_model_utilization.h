// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>

#include "helper_link/delegates.h"
#include "modules/cpu_tick_sampling.h"
#include "modules/metric_history.h"
#include "modules/metric_model.h"
#include "modules/model_state.h"
#include "ports/accelerator_registry.h"
#include "ports/processor_ticks.h"
#include "sampling/sample_reader.h"
#include "sensors/sg_system_gpu_info.h"

namespace pallimo::modules {

/// How busy the CPU, its two kinds of cores and the GPU are, with histories.
///
/// The CPU's figures are counted by the kernel from sample to sample (the first sample since start:
/// since boot); the sample itself only tells which processors are of which kind. The GPU's is what
/// its driver says at the moment. Threads as for ModuleModelPower.
class ModuleModelUtilization final : public MetricModel,
                                     public helper_link::UtilizationModelDelegate {
 public:
  /// All of it outlives the model.
  struct Services {
    ports::ProcessorTicks& ticks;
    ports::AcceleratorRegistry& accelerators;
  };

  /// The latest fractions, 0 to 1. Not a number where no ticks were counted: none passed, they
  /// can't be read, or no processor is known to be of the kind. Beside 0 to 1 when a counter of the
  /// kernel turned negative in between (after some 248 days): by some 1e-8 then, without limit
  /// where the figure is since boot.
  struct Figures {
    double utilization = 0;     ///< of all processors together
    double eutilization = 0;    ///< of the efficiency cores
    double putilization = 0;    ///< of the performance cores
    double utilizationGPU = 0;  ///< 0 also when there is no GPU to ask
    bool isGPUTold = false;     ///< whether there is one, and its driver told
  };

  /// Everything that the model holds at one moment; each history has at most 350 values.
  struct Snapshot : Figures {
    MetricHistory::Snapshot historic;
    MetricHistory::Snapshot historice;
    MetricHistory::Snapshot historicp;
    MetricHistory::Snapshot historicGPU;
  };

  /// Follows the notices of `notifications`, which outlives the model.
  static std::shared_ptr<ModuleModelUtilization> create(
      base::NotificationCentre& notifications, std::weak_ptr<const sampling::SampleReader> reader,
      const Services& services);
  ~ModuleModelUtilization() override;

  /// Both kinds of cores stand at 0 until the reader's table of clusters is no longer empty; from
  /// then on it is never asked again. A kind whose key that table lacks counts as wholly busy. (The
  /// parser's tables have both keys or none; a kind that the machine lacks has an empty list.)
  void ingestSample() override;
  /// Keeps the ticks counted last, so that the next sample measures from there and not since boot,
  /// and which processors are of which kind.
  void clearData() override;

  Figures figures() const { return state_.figures(); }
  /// Made when it is asked for and shared until the next change. Never nullptr.
  std::shared_ptr<const Snapshot> snapshot() const { return state_.snapshot(); }

 private:
  struct State {
    Figures figures;
    MetricHistory historic;
    MetricHistory historice;
    MetricHistory historicp;
    MetricHistory historicGPU;

    Snapshot snapshot() const;
  };

  ModuleModelUtilization(std::weak_ptr<const sampling::SampleReader> reader,
                         const Services& services);

  Figures readFigures();
  TickSnapshot ticksSinceLastTime();

  const std::weak_ptr<const sampling::SampleReader> reader_;
  ports::ProcessorTicks& ticks_;
  const sensors::SGSystemGPUInfo gpu_;

  // The delivery thread's alone.
  std::optional<TickSnapshot> prevSnapShot_;
  sampling::ClusterCPUs cpuE_P_;  // empty until a sample names the clusters' processors

  ModelState<State, Figures, Snapshot> state_;
};

}  // namespace pallimo::modules
