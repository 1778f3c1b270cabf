// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string>

#include "adapters/common/no_software_updater.h"
#include "adapters/common/stream_console.h"
#include "adapters/common/syslog_log.h"
#include "adapters/common/system_random.h"
#include "adapters/libplist/libplist_reader.h"
#include "adapters/linux/installation/built_bundle.h"
#include "adapters/linux/installation/helper_installation.h"
#include "adapters/linux/installation/state_folder.h"
#include "adapters/linux/installation/user_authorization.h"
#include "adapters/linux/link/dbus_helper_connection.h"
#include "adapters/linux/notices/desktop_notifications.h"
#include "adapters/prometheus/prometheus_metrics_server.h"
#include "adapters/qt/qt_background_queue.h"
#include "adapters/qt/qt_file_store.h"
#include "adapters/qt/qt_main_queue.h"
#include "adapters/qt/qt_process_information.h"
#include "adapters/qt/qt_screens.h"
#include "adapters/qt/qt_url_opener.h"
#include "adapters/qt/qt_user_defaults.h"
#include "adapters/qt/system_clock.h"
#include "adapters/simulated/faults/faults.h"
#include "adapters/simulated/faults/faulty_authorization_services.h"
#include "adapters/simulated/faults/faulty_helper_installer.h"
#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/simulated_machine.h"
#include "app/start/make_platform.h"
#include "base/notification_centre.h"
#include "base/serial_thread.h"
#include "ports/helper_connection.h"
#include "ports/http_client.h"
#include "ports/system_controls.h"

namespace pallimo::app::linux {

/// The platform off macOS: the helper link, the system log and the console of this system, Qt's
/// queues and settings, and a simulated Mac with its faults. Everything is checked and prepared by
/// who makes it; the helper is not installed.
class LinuxPlatform final : public PlatformOwner {
 public:
  struct Parts {
    adapters::linux::StateFolder folder;
    std::string bundle;          ///< absolute path of the bundle's folder
    std::string embeddedHelper;  ///< absolute path of the bundle's helper
    adapters::simulated::SimulatedMachine machine;
    adapters::simulated::Faults faults;
    adapters::qt::SystemClock::TimePoint start;
    double speed = 1;
    int consoleDescriptor = 1;
    Analytics analytics;
  };

  explicit LinuxPlatform(Parts parts);

  const Platform& platform() const override { return platform_; }
  void endLink() override;

 private:
  const std::unique_ptr<ports::SystemControls> systemControls_;
  adapters::qt::QtMainQueue mainQueue_;
  adapters::common::StreamConsole console_;
  adapters::qt::QtFileStore files_;
  // What its tasks use stands above it: they write files, and queue others on the main queue.
  adapters::qt::QtBackgroundQueue backgroundQueue_;
  base::NotificationCentre notifications_;
  adapters::qt::QtUserDefaults defaults_;
  const adapters::qt::SystemClock clock_;
  const std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_;
  const adapters::libplist::LibplistReader propertyLists_;
  adapters::linux::DesktopNotifications notices_;
  adapters::common::SystemRandom random_;
  /// Here the app comes from a source that has its own updates.
  adapters::common::NoSoftwareUpdater updater_{"updates are only available in the macOS app"};
  const Analytics analytics_;
  const adapters::qt::QtScreens screens_;
  const adapters::qt::QtProcessInformation processInformation_;
  adapters::qt::QtUrlOpener urlOpener_;
  adapters::prometheus::PrometheusMetricsServer metricsServer_;
  adapters::common::SyslogLog systemLog_;
  adapters::linux::BuiltBundle bundle_;
  adapters::linux::UserAuthorization authorization_;
  adapters::simulated::FaultyAuthorizationServices faultyAuthorization_;
  adapters::linux::HelperInstallation installation_;
  adapters::simulated::FaultyHelperInstaller faultyInstallation_;
  // The sensors follow what the connector delivers on the thread; the last one goes first.
  std::unique_ptr<base::SerialThread> delivery_;
  std::unique_ptr<adapters::linux::DBusHelperConnector> connector_;
  std::unique_ptr<ports::HelperConnector> followedConnector_;
  const Platform platform_;
};

}  // namespace pallimo::app::linux
