// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/sensors/simulated_sensors.h"
#include "adapters/simulated/simulated_machine.h"
#include "adapters/simulated/simulation_file.h"
#include "app/models/general_model.h"
#include "base/notification_centre.h"
#include "base/text_format.h"
#include "fakes/fake_authorization_services.h"
#include "fakes/fake_bundle.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_helper_connector.h"
#include "fakes/fake_helper_installer.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "logging/log_file_data.h"

namespace pallimo::scenarios {

/// The whole program without Qt on a recorded Mac. The test is the helper: it answers each request
/// with what the recording's powermetrics prints; everything else the program reads by itself.
class RecordedMac {
 public:
  /// A result without bytes gives no row.
  static constexpr const char* kNoRow = "-";

  /// What the program reads of the machine beside the helper's documents.
  struct Sensors {
    const ports::SystemControls& systemControls;
    ports::SmcDevice& smcDevice;
    ports::HidSensors& hidSensors;
    ports::AcceleratorRegistry& accelerators;
    ports::ProcessorTicks& processorTicks;
  };
  /// Puts others in their place.
  using Exchange = std::function<Sensors(Sensors)>;

  /// Starts the program. `samplingResolution` is the stored period in ms. Throws when there is no
  /// such recording.
  explicit RecordedMac(
      const std::string& folder, std::optional<double> samplingResolution = std::nullopt,
      const Exchange& exchange = [](Sensors own) { return own; })
      : RecordedMac(recordingIn(folder), samplingResolution, exchange) {}
  /// The same with whatever machine the simulation names, a built-in one for example.
  explicit RecordedMac(
      const adapters::simulated::Simulation& simulation,
      std::optional<double> samplingResolution = std::nullopt,
      const Exchange& exchange = [](Sensors own) { return own; })
      : machine_(load(simulation)),
        controls_(machine_.systemControls()),
        sensors_(machine_.sensors(clock_)),
        followed_(sensors_->follow(helperConnector_)) {
    bundle_.embedHelper("1.0");
    if (samplingResolution) defaults_.setDouble("samplingResolution", *samplingResolution);
    general_.emplace(platform(exchange({*controls_, sensors_->smcDevice(), sensors_->hidSensors(),
                                        sensors_->accelerators(), sensors_->processorTicks()})));
    general_->sampleRows()->addReceiver(
        [this](const logging::LogRow& row) { rows_.push_back(figuresOf(row)); });
    general_->xpcmanager()->checkHelperAtStart({});
    queue_.run();
    helper().replyIsResponding(true);
    helper().replyVersion("1.0");
    queue_.run();
  }
  ~RecordedMac() { queue_.run(); }
  RecordedMac(const RecordedMac&) = delete;
  RecordedMac& operator=(const RecordedMac&) = delete;

  /// The program sends its next request and the helper answers it. The columns of the row that it
  /// gives, without the two times, or kNoRow.
  std::string nextRow() {
    if (!isAsked()) queue_.advance(std::chrono::seconds(1));
    if (!isAsked()) return "the program sent no request";
    helper().sendResult(documentOf(++answered_));
    queue_.run();
    const std::vector<std::string> rows = std::exchange(rows_, {});
    if (rows.size() > 1) return "one result gave several rows";
    return rows.empty() ? kNoRow : rows.front();
  }

  /// The helper dies and another one is installed in its place.
  void replaceHelper() {
    helper().interrupt();
    queue_.run();
    general_->xpcmanager()->installHelper();
    queue_.run();
    helper().replyIsResponding(true);
    helperConnector_.journal().take();
    requested_ = answered_ = 0;
    queue_.run();
  }

  /// The user chooses another sampling period, ms, which clears the histories.
  void setSamplingResolution(double milliseconds) {
    defaults_.setDouble("samplingResolution", milliseconds);
    queue_.run();
  }

  /// The power graph's axis: its labels, highest first, and the maximum. "30 15 0, 30".
  std::string axis() const {
    const auto power = general_->modelPower()->snapshot();
    std::string text;
    for (const std::string_view label : power->axisLabels) {
      if (!text.empty()) text += ' ';
      text += label;
    }
    return text + ", " + base::formatFixed(power->axisMaxValue, 0);
  }

  /// Chip, GPU, efficiency cores, performance cores, GPU cores, as one line.
  std::string title() const {
    const modules::ModuleModelMainTitle& title = *general_->modelMainTitle();
    return title.appleSiliconName() + ", " + title.gpuName() + ", " +
           std::to_string(title.numberOfECore()) + ", " + std::to_string(title.numberOfPCore()) +
           ", " + std::to_string(title.numberOfGPUCore());
  }

  app::GeneralModel& general() { return *general_; }

 private:
  static adapters::simulated::Simulation recordingIn(const std::string& folder) {
    adapters::simulated::Simulation simulation;
    simulation.recording = folder;
    return simulation;
  }

  static adapters::simulated::SimulatedMachine load(
      const adapters::simulated::Simulation& simulation) {
    auto loaded = adapters::simulated::SimulatedMachine::load(simulation);
    if (const auto* error = std::get_if<adapters::simulated::SimulationError>(&loaded)) {
      throw std::runtime_error(error->message);
    }
    return std::get<adapters::simulated::SimulatedMachine>(std::move(loaded));
  }

  /// Everything but the times.
  static std::string figuresOf(const logging::LogRow& row) {
    const std::string line = logging::csvLine(logging::formatRow(row, row.time));
    const std::size_t afterClock = line.find(", ");
    return line.substr(line.find(", ", afterClock + 2) + 2);
  }

  app::Platform platform(const Sensors& sensors) {
    return {.mainQueue = queue_,
            .backgroundQueue = backgroundQueue_,
            .notifications = notifications_,
            .defaults = defaults_,
            .propertyLists = propertyLists_,
            .systemControls = sensors.systemControls,
            .smcDevice = sensors.smcDevice,
            .hidSensors = sensors.hidSensors,
            .accelerators = sensors.accelerators,
            .processorTicks = sensors.processorTicks,
            .programLauncher = sensors_->programLauncher(),
            .helperConnector = *followed_,
            .authorizationServices = authorization_,
            .helperInstaller = installer_,
            .bundle = bundle_,
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
            .analyticsURL = fakes::FakeDesktop::kAnalyticsURL};
  }

  fakes::FakeHelperConnection& helper() { return *helperConnector_.latest(); }

  /// Whether a request waits for its answer.
  bool isAsked() {
    for (const std::string& entry : helperConnector_.journal().take()) {
      if (entry.rfind("-> requestPowermetrics ", 0) == 0) ++requested_;
    }
    return requested_ > answered_;
  }

  std::optional<base::Bytes> documentOf(std::uint64_t request) const {
    adapters::simulated::PowermetricsRequest asked;
    asked.number = request;
    asked.samplers = {"cpu_power", "gpu_power"};
    adapters::simulated::PowermetricsRun run = machine_.powermetrics(asked);
    if (run.output.empty()) return std::nullopt;
    return std::move(run.output);
  }

  fakes::ManualMainQueue queue_;
  fakes::ManualBackgroundQueue backgroundQueue_;
  base::NotificationCentre notifications_;
  fakes::MemoryUserDefaults defaults_;
  const adapters::libplist::LibplistReader propertyLists_;
  fakes::FakeAuthorizationServices authorization_;
  fakes::FakeHelperInstaller installer_;
  fakes::FakeBundle bundle_;
  const fakes::ManualClock clock_;
  fakes::RecordingConsole console_;
  fakes::RecordingSystemLog systemLog_;
  fakes::FakeDesktop desktop_;
  const adapters::simulated::SimulatedMachine machine_;
  const std::unique_ptr<ports::SystemControls> controls_;
  const std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_;
  fakes::FakeHelperConnector helperConnector_;
  const std::unique_ptr<ports::HelperConnector> followed_;
  std::optional<app::GeneralModel> general_;

  std::uint64_t requested_ = 0;  ///< of the present connection, as the next one
  std::uint64_t answered_ = 0;
  std::vector<std::string> rows_;
};

}  // namespace pallimo::scenarios
