// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "adapters/common/posix_program_launcher.h"
#include "adapters/common/stream_console.h"
#include "adapters/common/system_random.h"
#include "adapters/libplist/libplist_reader.h"
#include "adapters/prometheus/prometheus_metrics_server.h"
#include "adapters/qt/qt_background_queue.h"
#include "adapters/qt/qt_file_store.h"
#include "adapters/qt/qt_main_queue.h"
#include "adapters/qt/qt_screens.h"
#include "adapters/qt/qt_url_opener.h"
#include "adapters/qt/qt_user_defaults.h"
#include "adapters/qt/system_clock.h"
#include "app/start/make_platform.h"
#include "base/notification_centre.h"
#include "base/serial_thread.h"

namespace pallimo::app::macos {

/// The platform on a Mac: its own sensors, kernel, services and helper link, and Qt's queues.
class MacPlatform final : public PlatformOwner {
 public:
  struct Parts {
    adapters::qt::SystemClock::TimePoint start;
    int consoleDescriptor = 1;
    Analytics analytics;
  };

  explicit MacPlatform(Parts parts);

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
  const std::unique_ptr<ports::SmcDevice> smcDevice_;
  const std::unique_ptr<ports::HidSensors> hidSensors_;
  const std::unique_ptr<ports::AcceleratorRegistry> accelerators_;
  const std::unique_ptr<ports::ProcessorTicks> processorTicks_;
  adapters::common::PosixProgramLauncher programLauncher_;
  const adapters::libplist::LibplistReader propertyLists_;
  const std::unique_ptr<ports::UserNotifications> notices_;
  adapters::common::SystemRandom random_;
  const std::unique_ptr<ports::SoftwareUpdater> updater_;
  const Analytics analytics_;
  const adapters::qt::QtScreens screens_;
  const std::unique_ptr<ports::ProcessInformation> processInformation_;
  adapters::qt::QtUrlOpener urlOpener_;
  adapters::prometheus::PrometheusMetricsServer metricsServer_;
  const std::unique_ptr<ports::SystemLog> systemLog_;
  const std::unique_ptr<ports::Bundle> bundle_;
  const std::unique_ptr<ports::AuthorizationServices> authorization_;
  const std::unique_ptr<ports::HelperInstaller> installer_;
  // The connector delivers on the thread, and goes first.
  std::unique_ptr<base::SerialThread> delivery_;
  std::unique_ptr<ports::HelperConnector> connector_;
  const Platform platform_;
};

}  // namespace pallimo::app::macos
