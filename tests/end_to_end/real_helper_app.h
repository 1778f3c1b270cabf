// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "adapters/common/poll_loop.h"
#include "adapters/libplist/libplist_reader.h"
#include "adapters/linux/installation/built_bundle.h"
#include "adapters/linux/installation/helper_installation.h"
#include "adapters/linux/installation/user_authorization.h"
#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/simulated_machine.h"
#include "app/models/content_view.h"
#include "app/models/general_model.h"
#include "base/notification_centre.h"
#include "base/serial_thread.h"
#include "end_to_end/helper_fixture.h"
#include "fakes/fake_desktop.h"
#include "fakes/manual_clock.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "ports/background_queue.h"

namespace pallimo::end_to_end {

/// A main queue whose delays pass `speed` times faster than real time.
class FasterQueue final : public ports::MainQueue {
 public:
  FasterQueue(ports::MainQueue& inner, double speed) : inner_(inner), speed_(speed) {}

  void async(std::function<void()> task) override { inner_.async(std::move(task)); }
  void after(std::chrono::milliseconds delay, std::function<void()> task) override {
    inner_.after(shortened(delay), std::move(task));
  }
  std::unique_ptr<ports::RepeatingTimer> every(std::chrono::milliseconds interval,
                                               std::function<void()> tick) override {
    return inner_.every(shortened(interval), std::move(tick));
  }

 private:
  std::chrono::milliseconds shortened(std::chrono::milliseconds nominal) const {
    return std::chrono::milliseconds(std::llround(static_cast<double>(nominal.count()) / speed_));
  }

  ports::MainQueue& inner_;
  const double speed_;
};

/// One thread beside the main thread.
class OneThreadQueue final : public ports::BackgroundQueue {
 public:
  void async(std::function<void()> task) override { thread_.post(std::move(task)); }

 private:
  base::SerialThread thread_;
};

/// The app's whole core in this process, its main queue on the test's thread, with the real link,
/// the real installation and the real helper beside it. Only settings, log and the Mac are not
/// real.
class RealHelperApp : public LinkTest {
 protected:
  /// An update leaves the old helper a third of a second to go.
  static constexpr double kSpeed = 3;

  RealHelperApp() { simulate(kSpeed); }
  ~RealHelperApp() override { endApp(); }

  /// The app starts: from here on there is a content that asks for the helper.
  void startApp() {
    machine_.emplace(loadMachine());
    systemControls_ = machine_->systemControls();
    sensors_ = machine_->sensors(clock_);
    bundle_.emplace(bundleFolder, propertyLists_);
    general_.emplace(app::Platform{.mainQueue = queue_,
                                   .backgroundQueue = *background_,
                                   .notifications = notifications_,
                                   .defaults = defaults_,
                                   .propertyLists = propertyLists_,
                                   .systemControls = *systemControls_,
                                   .smcDevice = sensors_->smcDevice(),
                                   .hidSensors = sensors_->hidSensors(),
                                   .accelerators = sensors_->accelerators(),
                                   .processorTicks = sensors_->processorTicks(),
                                   .programLauncher = sensors_->programLauncher(),
                                   .helperConnector = connector,
                                   .authorizationServices = authorization_,
                                   .helperInstaller = installation_,
                                   .bundle = *bundle_,
                                   .clock = clock_,
                                   .console = console_,
                                   .systemLog = systemLog_,
                                   .files = desktop_.files,
                                   .userNotifications = desktop_.userNotifications,
                                   .randomNumbers = desktop_.randomNumbers,
                                   .softwareUpdater = desktop_.softwareUpdater,
                                   .analyticsClient = desktop_.analyticsClient,
                                   .screens = desktop_.screens,
                                   .processInformation = desktop_.processInformation,
                                   .urlOpener = desktop_.urlOpener,
                                   .metricsServer = desktop_.metricsServer,
                                   .analyticsURL = fakes::FakeDesktop::kAnalyticsURL});
    general_->sampleRows()->addReceiver([this](const logging::LogRow&) { ++rows_; });
    view_ = std::make_unique<app::ContentView>(queue_, *general_);
  }

  /// The app ends in its own order; the helper is told to stop.
  void endApp() {
    if (!general_) return;
    general_->applicationWillTerminate();
    // What keeps an open connection and its client alive is each other.
    if (const auto connection = manager().client().connection()) {
      connection->setInvalidationHandler(nullptr);
      connection->invalidate();
    }
    link.reset();
    delivery.reset();
    background_.reset();
    view_.reset();
    general_.reset();
  }

  helper_link::XPCManager& manager() { return *general_->xpcmanager(); }
  ui::MainContent content() const { return view_->content(); }
  app::ContentView& view() { return *view_; }
  ports::MainQueue& queue() { return queue_; }
  base::NotificationCentre& notifications() { return notifications_; }
  /// Rows that were distributed so far.
  std::size_t rows() const { return rows_; }

  /// Runs the main queue until the condition holds; false when it does not in time.
  bool runUntil(const std::function<bool()>& condition) {
    bool isInTime = true;
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    const auto look = loop_.every(std::chrono::milliseconds(1), [&] {
      isInTime = std::chrono::steady_clock::now() < end;
      if (condition() || !isInTime) loop_.stop();
    });
    loop_.run();
    return isInTime;
  }
  bool runUntilContentIs(ui::MainContent wanted) {
    return runUntil([this, wanted] { return content() == wanted; });
  }
  /// After the press of an update: an old helper that ends late takes the new one's probe with it
  /// and leaves the install screen, whose button is pressed then.
  bool runUntilUpdated() {
    constexpr std::chrono::seconds kPatience{3};
    for (int presses = 0; presses < 10; ++presses) {
      const auto end = std::chrono::steady_clock::now() + kPatience;
      runUntil([&] {
        return content() == ui::MainContent::live || std::chrono::steady_clock::now() > end;
      });
      if (content() == ui::MainContent::live) return true;
      if (content() == ui::MainContent::install) press();
    }
    return false;
  }
  bool runUntilRows(std::size_t count) {
    return runUntil([this, count] { return rows_ >= count; });
  }
  /// Presses the button of the install or update screen.
  void press() { EXPECT_TRUE(view_->press()); }

  static adapters::simulated::SimulatedMachine loadMachine() {
    adapters::simulated::Simulation simulation;
    simulation.machine = "MacBook Pro M2 Pro";
    simulation.speed = kSpeed;
    return std::get<adapters::simulated::SimulatedMachine>(
        adapters::simulated::SimulatedMachine::load(simulation));
  }

  /// Where the app looks for the helper that it embeds; to be chosen before it starts.
  std::string bundleFolder = PALLIMO_BIN_DIR;

 private:
  adapters::common::PollLoop loop_;
  FasterQueue queue_{loop_, kSpeed};
  base::NotificationCentre notifications_;
  fakes::MemoryUserDefaults defaults_;
  fakes::ManualClock clock_;
  fakes::RecordingConsole console_;
  fakes::RecordingSystemLog systemLog_;
  fakes::FakeDesktop desktop_;
  adapters::libplist::LibplistReader propertyLists_;
  std::optional<adapters::linux::BuiltBundle> bundle_;
  adapters::linux::UserAuthorization authorization_;
  adapters::linux::HelperInstallation installation_{kEmbeddedHelper, folder, systemLog_};
  std::optional<adapters::simulated::SimulatedMachine> machine_;
  std::unique_ptr<ports::SystemControls> systemControls_;
  std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_;
  std::unique_ptr<OneThreadQueue> background_ = std::make_unique<OneThreadQueue>();
  std::atomic<std::size_t> rows_ = 0;
  std::optional<app::GeneralModel> general_;
  std::unique_ptr<app::ContentView> view_;
};

}  // namespace pallimo::end_to_end
