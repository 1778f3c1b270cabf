// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <vector>

#include "logging/log_row.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "ports/clock.h"
#include "sampling/sample_steps.h"

namespace pallimo::logging {

/// A row with what the sample tells of it beside its figures.
struct SampleRow : LogRow {
  bool isGPUTold = false;  ///< whether gpuUtilization is the driver's figure
};

/// Takes one row at the engine's log step and hands it to whoever wants rows, so that two quick
/// results are two rows. Delivery thread.
class SampleRows final : public sampling::RowLog {
 public:
  using Receiver = std::function<void(const SampleRow&)>;

  /// The models whose values a row holds. They outlive the rows.
  struct Models {
    const modules::ModuleModelPower& power;
    const modules::ModuleModelFrequency& frequency;
    const modules::ModuleModelTemperature& temperature;
    const modules::ModuleModelUtilization& utilization;
  };

  SampleRows(const ports::Clock& clock, const Models& models);

  /// Adds a receiver; before sampling starts. It is called on the delivery thread and must not
  /// block.
  void addReceiver(Receiver receiver);

  void appendRow() override;

 private:
  const ports::Clock& clock_;
  const Models models_;
  std::vector<Receiver> receivers_;
};

}  // namespace pallimo::logging
