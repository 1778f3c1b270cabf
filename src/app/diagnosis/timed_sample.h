// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <memory>
#include <string_view>
#include <vector>

#include "app/diagnosis/impatient_accelerator_registry.h"
#include "app/start/platform.h"
#include "base/bytes.h"
#include "sampling/sg_power_metrics.h"

namespace pallimo::app {

/// One sample on the app's own road, engine, modules and row, with a look at the clock between the
/// stages. Takes no part in anything else: it has modules of its own and asks nobody for samples.
///
/// Made and destroyed on the main thread, where the machine's temperatures can be asked for (they
/// stop the program otherwise). The platform outlives it.
class TimedSample {
 public:
  using Duration = std::chrono::system_clock::duration;

  struct Stage {
    std::string_view name;
    Duration duration{};
  };

  explicit TimedSample(const Platform& platform);
  ~TimedSample();
  TimedSample(const TimedSample&) = delete;
  TimedSample& operator=(const TimedSample&) = delete;

  /// What a request would carry.
  bool includeGPU() const { return engine_->includeGPU(); }
  double msSampling() const { return engine_->msSampling(); }

  /// Takes the document down the road and tells how long each stage took, in their order. Delivery
  /// thread, once.
  std::vector<Stage> take(const base::Bytes& document);

 private:
  class Watch;
  class Gate;
  struct Modules;

  ImpatientAcceleratorRegistry accelerators_;
  const std::shared_ptr<Watch> watch_;
  const std::shared_ptr<Gate> gate_;
  const std::shared_ptr<sampling::SGPowerMetrics> engine_;
  const std::unique_ptr<const Modules> modules_;
};

}  // namespace pallimo::app
