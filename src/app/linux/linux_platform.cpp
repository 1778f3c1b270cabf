// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/linux/linux_platform.h"

#include "adapters/linux/helper_launcher.h"

namespace pallimo::app::linux {

namespace linux_adapters = adapters::linux;

LinuxPlatform::LinuxPlatform(Parts parts)
    : systemControls_(parts.machine.systemControls()),
      mainQueue_(parts.speed),
      defaults_(parts.folder.settingsFile()),
      clock_(parts.start, parts.speed),
      sensors_(parts.machine.sensors(clock_)),
      console_(parts.consoleDescriptor),
      systemLog_("pallimo"),
      bundle_(parts.bundle, propertyLists_),
      faultyAuthorization_(authorization_, parts.faults),
      installation_(parts.embeddedHelper, parts.folder, systemLog_),
      faultyInstallation_(installation_, parts.faults),
      delivery_(std::make_unique<base::SerialThread>()),
      connector_(std::make_unique<linux_adapters::DBusHelperConnector>(
          *delivery_, parts.folder, linux_adapters::HelperLauncher(parts.folder))),
      followedConnector_(sensors_->follow(*connector_)),
      platform_{mainQueue_,
                backgroundQueue_,
                notifications_,
                defaults_,
                propertyLists_,
                *systemControls_,
                sensors_->smcDevice(),
                sensors_->hidSensors(),
                sensors_->accelerators(),
                sensors_->processorTicks(),
                sensors_->programLauncher(),
                *followedConnector_,
                faultyAuthorization_,
                faultyInstallation_,
                bundle_,
                clock_,
                console_,
                systemLog_} {}

void LinuxPlatform::endLink() {
  followedConnector_.reset();
  connector_.reset();
  delivery_.reset();
}

}  // namespace pallimo::app::linux
