// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/simulated/sensors/current_step.h"
#include "ports/hid_sensors.h"

namespace pallimo::adapters::simulated {

/// The HID event system of a simulated machine. It has nothing but temperature sensors: a client
/// that matches anything but exactly PrimaryUsagePage 0xFF00 and PrimaryUsage 5 finds no service,
/// "LocationID" is the only property and the temperature (type 15, field 15 << 16) the only event.
/// Any thread.
class SimulatedHidSensors final : public ports::HidSensors {
 public:
  /// `now` outlives the object and its clients.
  explicit SimulatedHidSensors(CurrentStep& now) : now_(now) {}

  /// Never nullptr. What a client took hold of stays what it was when the step moves on.
  std::unique_ptr<ports::HidClient> createClient() override;

 private:
  CurrentStep& now_;
};

}  // namespace pallimo::adapters::simulated
