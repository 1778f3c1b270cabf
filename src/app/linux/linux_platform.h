// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/linux/built_bundle.h"
#include "adapters/linux/dbus_helper_connection.h"
#include "adapters/linux/helper_installation.h"
#include "adapters/linux/state_folder.h"
#include "adapters/linux/stream_console.h"
#include "adapters/linux/syslog_log.h"
#include "adapters/qt/qt_main_queue.h"
#include "adapters/qt/qt_user_defaults.h"
#include "adapters/qt/system_clock.h"
#include "adapters/simulated/simulated_machine.h"
#include "adapters/simulated/simulated_sensors.h"
#include "app/make_platform.h"
#include "base/notification_centre.h"
#include "base/serial_thread.h"
#include "ports/helper_connection.h"
#include "ports/system_controls.h"

namespace pallimo::app::linux {

/// The platform off macOS: the helper link, the system log and the console of this system, Qt's
/// queue and settings, and a simulated Mac. Everything is checked and prepared by who makes it.
class LinuxPlatform final : public PlatformOwner {
 public:
  struct Parts {
    adapters::linux::StateFolder folder;
    std::string builtHelper;  ///< absolute path of the helper that the build made
    adapters::simulated::SimulatedMachine machine;
    adapters::qt::SystemClock::TimePoint start;
    double speed = 1;
    int consoleDescriptor = 1;
  };

  explicit LinuxPlatform(Parts parts);

  const Platform& platform() const override { return platform_; }
  void endLink() override;

  /// Installs the helper that the build made; returns what went wrong, or nothing.
  std::optional<std::string> installHelper() const { return installation_.install(); }

 private:
  const std::unique_ptr<ports::SystemControls> systemControls_;
  adapters::qt::QtMainQueue mainQueue_;
  base::NotificationCentre notifications_;
  adapters::qt::QtUserDefaults defaults_;
  const adapters::qt::SystemClock clock_;
  const std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_;
  const adapters::libplist::LibplistReader propertyLists_;
  adapters::linux::StreamConsole console_;
  adapters::linux::SyslogLog systemLog_;
  adapters::linux::BuiltBundle bundle_;
  adapters::linux::HelperInstallation installation_;
  // The sensors follow what the connector delivers on the thread; the last one goes first.
  std::unique_ptr<base::SerialThread> delivery_;
  std::unique_ptr<adapters::linux::DBusHelperConnector> connector_;
  std::unique_ptr<ports::HelperConnector> followedConnector_;
  const Platform platform_;
};

}  // namespace pallimo::app::linux
