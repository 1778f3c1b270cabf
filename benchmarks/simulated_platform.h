// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <utility>
#include <variant>

#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/simulated_machine.h"
#include "analytics/silent_http_client.h"
#include "app/start/platform.h"
#include "fakes/fake_platform.h"

namespace pallimo::benchmarks {

/// The machine with the most processors, loaded as the app loads it.
inline adapters::simulated::SimulatedMachine loadMachine() {
  adapters::simulated::Simulation simulation;
  simulation.machine = "Mac Studio M2 Ultra";
  auto loaded = adapters::simulated::SimulatedMachine::load(simulation);
  return std::get<adapters::simulated::SimulatedMachine>(std::move(loaded));
}

/// What the app stands on off macOS, with a machine's sensors; the queues, the settings and the
/// user's desktop are fakes, and there is no helper. One thread.
class SimulatedPlatform {
 public:
  SimulatedPlatform() { fakes_.helperConnector.setFailsAtOnce(true); }

  app::Platform platform() {
    const app::Platform fake = fakes_.platform();
    return {.mainQueue = fake.mainQueue,
            .backgroundQueue = fake.backgroundQueue,
            .notifications = fake.notifications,
            .defaults = fake.defaults,
            .propertyLists = fake.propertyLists,
            .systemControls = *controls_,
            .smcDevice = sensors_->smcDevice(),
            .hidSensors = sensors_->hidSensors(),
            .accelerators = sensors_->accelerators(),
            .processorTicks = sensors_->processorTicks(),
            .programLauncher = sensors_->programLauncher(),
            .helperConnector = fake.helperConnector,
            .authorizationServices = fake.authorizationServices,
            .helperInstaller = fake.helperInstaller,
            .bundle = fake.bundle,
            .clock = fake.clock,
            .console = fake.console,
            .systemLog = fake.systemLog,
            .files = fake.files,
            .userNotifications = fake.userNotifications,
            .randomNumbers = fake.randomNumbers,
            .softwareUpdater = fake.softwareUpdater,
            .analyticsClient = analytics_,
            .screens = fake.screens,
            .processInformation = fake.processInformation,
            .urlOpener = fake.urlOpener,
            .metricsServer = fake.metricsServer,
            .analyticsURL = fake.analyticsURL};
  }

  fakes::ManualMainQueue& mainQueue() { return fakes_.mainQueue; }

 private:
  fakes::FakePlatform fakes_;
  const adapters::simulated::SimulatedMachine machine_ = loadMachine();
  const std::unique_ptr<ports::SystemControls> controls_ = machine_.systemControls();
  const std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_ =
      machine_.sensors(fakes_.clock);
  analytics::SilentHttpClient analytics_;
};

}  // namespace pallimo::benchmarks
