// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/macos/mac_platform.h"

#include <utility>

#include "adapters/macos/c_adapters.h"
#include "adapters/macos/objc_adapters.h"
#include "app/macos/software_updater_choice.h"
#include "signing_requirements.h"

namespace pallimo::app::macos {

namespace mac = adapters::macos;

namespace {

// Together the bundle's identifier, so that the settings are those of the app's own domain.
constexpr const char* kOrganisation = "ostrovane.com";
constexpr const char* kApplication = "pallimo";

}  // namespace

MacPlatform::MacPlatform(Parts parts)
    : systemControls_(mac::makeSystemControls()),
      mainQueue_(1),
      console_(parts.consoleDescriptor),
      defaults_(kOrganisation, kApplication),
      clock_(parts.start, 1),
      smcDevice_(mac::makeSmcDevice()),
      hidSensors_(mac::makeHidSensors()),
      accelerators_(mac::makeAcceleratorRegistry()),
      processorTicks_(mac::makeProcessorTicks()),
      notices_(mac::makeUserNotifications()),
      updater_(softwareUpdater()),
      analytics_(std::move(parts.analytics)),
      processInformation_(mac::makeProcessInformation()),
      systemLog_(mac::makeSystemLog()),
      bundle_(mac::makeBundle()),
      authorization_(mac::makeAuthorizationServices()),
      installer_(mac::makeHelperInstaller()),
      delivery_(std::make_unique<base::SerialThread>()),
      connector_(mac::makeHelperConnector(*delivery_, signing::kHelperRequirement)),
      platform_{.mainQueue = mainQueue_,
                .backgroundQueue = backgroundQueue_,
                .notifications = notifications_,
                .defaults = defaults_,
                .propertyLists = propertyLists_,
                .systemControls = *systemControls_,
                .smcDevice = *smcDevice_,
                .hidSensors = *hidSensors_,
                .accelerators = *accelerators_,
                .processorTicks = *processorTicks_,
                .programLauncher = programLauncher_,
                .helperConnector = *connector_,
                .authorizationServices = *authorization_,
                .helperInstaller = *installer_,
                .bundle = *bundle_,
                .clock = clock_,
                .console = console_,
                .systemLog = *systemLog_,
                .files = files_,
                .userNotifications = *notices_,
                .randomNumbers = random_,
                .softwareUpdater = *updater_,
                .analyticsClient = *analytics_.client,
                .screens = screens_,
                .processInformation = *processInformation_,
                .urlOpener = urlOpener_,
                .metricsServer = metricsServer_,
                .analyticsURL = analytics_.url} {}

void MacPlatform::endLink() {
  connector_.reset();
  delivery_.reset();
}

}  // namespace pallimo::app::macos
