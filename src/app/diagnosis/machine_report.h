// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "app/diagnosis/report_text.h"
#include "app/start/platform.h"

namespace pallimo::app {

/// What the kernel and the sensors have to tell for a diagnosis. Whatever can't be read is said to
/// be so, and nothing stops the program. Main thread; blocks while the sensors are read and the
/// system profiler runs.
class MachineReport {
 public:
  explicit MachineReport(const Platform& platform)
      : platform_(platform), hasTemperatures_(findsTemperatures()) {}

  /// Whether the machine can sample at all.
  bool isAppleSilicon() const;
  /// Whether the temperatures can be asked for: it takes a model and a chip, and on a machine whose
  /// temperatures come from the HID event system a client of it.
  bool hasTemperatures() const { return hasTemperatures_; }

  /// The sections "System", "Machine" and "Temperature".
  void write(ReportText& report) const;

 private:
  bool findsTemperatures() const;
  void writeSystem(ReportText& report) const;
  void writeMachine(ReportText& report) const;
  void writeGpu(ReportText& report) const;
  void writeTemperature(ReportText& report) const;
  std::string textOf(std::string_view kernelVariable) const;

  const Platform& platform_;
  const bool hasTemperatures_;  ///< asked for once: it may make a client
};

}  // namespace pallimo::app
