// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/linux/linux_platform.h"

#include <utility>

#include "adapters/linux/installation/helper_launcher.h"
#include "adapters/linux/notices/session_bus_address.h"

namespace pallimo::app::linux {

namespace linux_adapters = adapters::linux;

LinuxPlatform::LinuxPlatform(Parts parts)
    : systemControls_(parts.machine.systemControls()),
      mainQueue_(parts.speed),
      console_(parts.consoleDescriptor),
      defaults_(parts.folder.settingsFile()),
      clock_(parts.start, parts.speed),
      sensors_(parts.machine.sensors(clock_)),
      notices_(console_, linux_adapters::sessionBusAddresses()),
      analytics_(std::move(parts.analytics)),
      systemLog_("pallimo"),
      bundle_(parts.bundle, propertyLists_),
      faultyAuthorization_(authorization_, parts.faults),
      installation_(parts.embeddedHelper, parts.folder, systemLog_),
      faultyInstallation_(installation_, parts.faults),
      delivery_(std::make_unique<base::SerialThread>()),
      connector_(std::make_unique<linux_adapters::DBusHelperConnector>(
          *delivery_, parts.folder, linux_adapters::HelperLauncher(parts.folder))),
      followedConnector_(sensors_->follow(*connector_)),
      platform_{.mainQueue = mainQueue_,
                .backgroundQueue = backgroundQueue_,
                .notifications = notifications_,
                .defaults = defaults_,
                .propertyLists = propertyLists_,
                .systemControls = *systemControls_,
                .smcDevice = sensors_->smcDevice(),
                .hidSensors = sensors_->hidSensors(),
                .accelerators = sensors_->accelerators(),
                .processorTicks = sensors_->processorTicks(),
                .programLauncher = sensors_->programLauncher(),
                .helperConnector = *followedConnector_,
                .authorizationServices = faultyAuthorization_,
                .helperInstaller = faultyInstallation_,
                .bundle = bundle_,
                .clock = clock_,
                .console = console_,
                .systemLog = systemLog_,
                .files = files_,
                .userNotifications = notices_,
                .randomNumbers = random_,
                .softwareUpdater = updater_,
                .analyticsClient = *analytics_.client,
                .screens = screens_,
                .processInformation = processInformation_,
                .urlOpener = urlOpener_,
                .metricsServer = metricsServer_,
                .analyticsURL = analytics_.url} {}

void LinuxPlatform::endLink() {
  followedConnector_.reset();
  connector_.reset();
  delivery_.reset();
}

}  // namespace pallimo::app::linux
