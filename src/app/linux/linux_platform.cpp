// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/linux/linux_platform.h"

#include <utility>

#include "adapters/linux/helper_launcher.h"

namespace pallimo::app::linux {

namespace linux_adapters = adapters::linux;

LinuxPlatform::LinuxPlatform(Parts parts)
    : systemControls_(std::move(parts.systemControls)),
      mainQueue_(parts.speed),
      defaults_(parts.folder.settingsFile()),
      clock_(parts.start, parts.speed),
      console_(parts.consoleDescriptor),
      systemLog_("pallimo"),
      bundle_(parts.builtHelper, PALLIMO_VERSION),
      installation_(parts.builtHelper, parts.folder, systemLog_),
      delivery_(std::make_unique<base::SerialThread>()),
      connector_(std::make_unique<linux_adapters::DBusHelperConnector>(
          *delivery_, parts.folder, linux_adapters::HelperLauncher(parts.folder))),
      platform_{mainQueue_,       notifications_, defaults_,     propertyLists_,
                *systemControls_, *connector_,    installation_, bundle_,
                clock_,           console_,       systemLog_} {}

void LinuxPlatform::endLink() {
  connector_.reset();
  delivery_.reset();
}

}  // namespace pallimo::app::linux
