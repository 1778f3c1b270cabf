// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "base/notification_centre.h"
#include "ports/accelerator_registry.h"
#include "ports/authorization_services.h"
#include "ports/background_queue.h"
#include "ports/bundle.h"
#include "ports/clock.h"
#include "ports/console.h"
#include "ports/file_store.h"
#include "ports/helper_connection.h"
#include "ports/helper_installer.h"
#include "ports/hid_sensors.h"
#include "ports/http_client.h"
#include "ports/main_queue.h"
#include "ports/metrics_server.h"
#include "ports/process_information.h"
#include "ports/processor_ticks.h"
#include "ports/program_launcher.h"
#include "ports/property_list_reader.h"
#include "ports/random_numbers.h"
#include "ports/screens.h"
#include "ports/smc_device.h"
#include "ports/software_updater.h"
#include "ports/system_controls.h"
#include "ports/system_log.h"
#include "ports/url_opener.h"
#include "ports/user_defaults.h"
#include "ports/user_notifications.h"

namespace pallimo::app {

/// The set of ports that the app stands on, and the notices that its parts send one another. Filled
/// once, by whoever picks the adapters; the owner of the parts outlives everything that is built
/// from it. References only, so it may be copied.
struct Platform {
  ports::MainQueue& mainQueue;
  ports::BackgroundQueue& backgroundQueue;
  base::NotificationCentre& notifications;
  ports::UserDefaults& defaults;
  const ports::PropertyListReader& propertyLists;
  const ports::SystemControls& systemControls;
  ports::SmcDevice& smcDevice;
  ports::HidSensors& hidSensors;
  ports::AcceleratorRegistry& accelerators;
  ports::ProcessorTicks& processorTicks;
  ports::ProgramLauncher& programLauncher;
  ports::HelperConnector& helperConnector;
  ports::AuthorizationServices& authorizationServices;
  ports::HelperInstaller& helperInstaller;
  ports::Bundle& bundle;
  const ports::Clock& clock;
  ports::Console& console;
  ports::SystemLog& systemLog;
  ports::FileStore& files;
  ports::UserNotifications& userNotifications;
  ports::RandomNumbers& randomNumbers;
  ports::SoftwareUpdater& softwareUpdater;  ///< one that never starts, where there is none
  ports::HttpClient& analyticsClient;       ///< one that sends nothing, where nothing may be told
  const ports::Screens& screens;
  const ports::ProcessInformation& processInformation;
  ports::UrlOpener& urlOpener;
  ports::MetricsServer& metricsServer;
  std::string_view analyticsURL;  ///< base of the analytics server, with "/" at its end
};

}  // namespace pallimo::app
