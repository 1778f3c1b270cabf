// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "adapters/libplist/libplist_reader.h"
#include "app/start/platform.h"
#include "base/notification_centre.h"
#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_authorization_services.h"
#include "fakes/fake_bundle.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_helper_connector.h"
#include "fakes/fake_helper_installer.h"
#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_processor_ticks.h"
#include "fakes/fake_program_launcher.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"

namespace pallimo::fakes {

/// A platform of fakes, except for the property-list reader, which is the one that ships. A Mac
/// with Apple silicon that embeds helper 1.0 and whose helper is the test; without keys, ticks and
/// GPU until the test adds them.
struct FakePlatform {
  ManualMainQueue mainQueue;
  ManualBackgroundQueue backgroundQueue;
  base::NotificationCentre notifications;
  MemoryUserDefaults defaults;
  adapters::libplist::LibplistReader propertyLists;
  FakeSystemControls systemControls;
  FakeSmcDevice smcDevice;
  FakeHidSensors hidSensors;
  FakeAcceleratorRegistry accelerators;
  FakeProcessorTicks processorTicks;
  FakeProgramLauncher programLauncher;
  FakeHelperConnector helperConnector;
  FakeAuthorizationServices authorizationServices;
  FakeHelperInstaller helperInstaller;
  FakeBundle bundle;
  ManualClock clock;
  RecordingConsole console;
  RecordingSystemLog systemLog;
  FakeDesktop desktop;

  FakePlatform() {
    setCpuType(0x0100000C);
    systemControls.setText("hw.model", "Mac14,9");
    systemControls.setText("machdep.cpu.brand_string", "Apple M2 Pro");
    bundle.embedHelper("1.0");
  }

  void setCpuType(std::int32_t type) { systemControls.setInteger("hw.cputype", type); }

  app::Platform platform() {
    return {.mainQueue = mainQueue,
            .backgroundQueue = backgroundQueue,
            .notifications = notifications,
            .defaults = defaults,
            .propertyLists = propertyLists,
            .systemControls = systemControls,
            .smcDevice = smcDevice,
            .hidSensors = hidSensors,
            .accelerators = accelerators,
            .processorTicks = processorTicks,
            .programLauncher = programLauncher,
            .helperConnector = helperConnector,
            .authorizationServices = authorizationServices,
            .helperInstaller = helperInstaller,
            .bundle = bundle,
            .clock = clock,
            .console = console,
            .systemLog = systemLog,
            .files = desktop.files,
            .userNotifications = desktop.userNotifications,
            .randomNumbers = desktop.randomNumbers,
            .softwareUpdater = desktop.softwareUpdater,
            .analyticsClient = desktop.analyticsClient,
            .screens = desktop.screens,
            .processInformation = desktop.processInformation,
            .urlOpener = desktop.urlOpener,
            .metricsServer = desktop.metricsServer,
            .analyticsURL = FakeDesktop::kAnalyticsURL};
  }
};

}  // namespace pallimo::fakes
