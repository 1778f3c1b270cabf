// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "ports/accelerator_registry.h"
#include "ports/authorization_services.h"
#include "ports/bundle.h"
#include "ports/helper_installer.h"
#include "ports/hid_sensors.h"
#include "ports/processor_ticks.h"
#include "ports/smc_device.h"
#include "ports/system_controls.h"
#include "ports/system_log.h"

namespace pallimo::adapters::macos {

// What a Mac offers through a C interface, call by call. Threads are those of the ports; handles
// are the kernel's own, and what is not owned by a CFRef or one of its kind is said to be so.

std::unique_ptr<ports::SmcDevice> makeSmcDevice();
std::unique_ptr<ports::AcceleratorRegistry> makeAcceleratorRegistry();
std::unique_ptr<ports::HidSensors> makeHidSensors();
std::unique_ptr<ports::SystemControls> makeSystemControls();
std::unique_ptr<ports::ProcessorTicks> makeProcessorTicks();
std::unique_ptr<ports::AuthorizationServices> makeAuthorizationServices();
/// Takes tokens of makeAuthorizationServices() only.
std::unique_ptr<ports::HelperInstaller> makeHelperInstaller();
/// The bundle of the running app.
std::unique_ptr<ports::Bundle> makeBundle();
/// The unified log. Lines are public: they tell nothing about the user.
std::unique_ptr<ports::SystemLog> makeSystemLog();

}  // namespace pallimo::adapters::macos
