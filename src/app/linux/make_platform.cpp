// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/make_platform.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/simulated_machine.h"
#include "adapters/simulated/simulation_file.h"
#include "adapters/simulated/text/json_node.h"
#include "app/linux/linux_platform.h"
#include "app/linux/state_folder_choice.h"
#include "helper_link/protocol/xpc_protocol.h"

namespace pallimo::app {

namespace {

namespace fs = std::filesystem;
namespace simulated = adapters::simulated;
using adapters::linux::StateFolder;
using adapters::qt::SystemClock;

/// The bundle of an app that was built is the folder that the app lies in.
std::variant<std::string, StartError> bundleFolder() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  if (error) return StartError{"can't find the app's own folder: " + error.message()};
  return self.parent_path().string();
}

std::string embeddedHelper(const std::string& bundle) {
  return bundle + "/Contents/Library/LaunchServices/" +
         std::string(helper_link::protocol::kMachServiceName);
}

std::string quotedPath(const std::string& path) { return "\"" + simulated::oneLine(path) + "\""; }

/// A built-in machine of that name, else a folder: helper and stand-in need its absolute path.
std::variant<simulated::Simulation, StartError> simulationFor(const Options& options,
                                                              SystemClock::TimePoint start) {
  simulated::Simulation simulation;
  simulation.speed = options.speed;
  simulation.startTime = std::chrono::duration<double>(start.time_since_epoch()).count();
  const std::string asked = options.machine.value_or(simulated::defaultMachineName());
  if (const auto* machine = simulated::findMachine(asked)) {
    simulation.machine = machine->name;
    return simulation;
  }
  std::error_code error;
  const bool isThere = fs::exists(asked, error);
  if (!isThere && !error) {
    return StartError{"there is no machine and no recording " + quotedPath(asked) +
                      "; --list-machines lists the built-in machines"};
  }
  if (isThere) simulation.recording = fs::canonical(asked, error);
  if (error) {
    return StartError{"can't find the recording " + quotedPath(asked) + ": " + error.message()};
  }
  return simulation;
}

std::variant<simulated::SimulatedMachine, StartError> machineOf(
    const simulated::Simulation& simulation) {
  auto loaded = simulated::SimulatedMachine::load(simulation);
  if (const auto* error = std::get_if<simulated::SimulationError>(&loaded)) {
    return StartError{error->message};
  }
  return std::get<simulated::SimulatedMachine>(std::move(loaded));
}

/// The pieces of a start, each of which may end it with one line.
class Start {
 public:
  Start(const Options& options, Analytics analytics)
      : options_(options), analytics_(std::move(analytics)), start_(SystemClock::realNow()) {}

  std::variant<std::unique_ptr<PlatformOwner>, StartError> make() {
    for (const auto step : {&Start::findFolder, &Start::findBundle, &Start::loadMachine,
                            &Start::prepareFolder, &Start::makeOwner}) {
      if (auto error = (this->*step)()) return *std::move(error);
    }
    return std::move(owner_);
  }

 private:
  using Problem = std::optional<StartError>;

  Problem findFolder() { return keep(linux::stateFolderPath(options_), folderPath_); }
  Problem findBundle() { return keep(bundleFolder(), bundle_); }

  Problem loadMachine() {
    // A kept recording may be gone, which is no reason to tell nothing.
    if (readKeptSimulation() && !keep(machineOf(simulation_), machine_)) return std::nullopt;
    if (auto error = keep(simulationFor(options_, start_), simulation_)) return error;
    return keep(machineOf(simulation_), machine_);
  }

  bool isDiagnosis() const { return options_.action == Options::Action::diagnose; }

  /// A diagnosis that names no machine is about the one of the last run, which it leaves as it is.
  bool readKeptSimulation() {
    if (!isDiagnosis() || options_.machine) return false;
    auto kept = simulated::readSimulation(StateFolder(folderPath_).simulationFile());
    auto* simulation = std::get_if<simulated::Simulation>(&kept);
    if (simulation == nullptr) return false;
    simulation_ = std::move(*simulation);
    return true;
  }

  /// Whether the folder is left as it is: a diagnosis makes none, and writes down only the machine
  /// that it is told.
  bool leavesFolder() const {
    std::error_code error;
    return isDiagnosis() && (!options_.machine || !fs::exists(folderPath_, error));
  }

  Problem prepareFolder() {
    if (leavesFolder()) return std::nullopt;
    const StateFolder folder(folderPath_);
    if (auto problem = prepareStateFolder(folder)) return StartError{*std::move(problem)};
    auto faults = simulated::keptFaults(folder.simulationFile());
    if (auto* error = std::get_if<simulated::SimulationError>(&faults)) {
      return StartError{std::move(error->message)};
    }
    simulation_.faults = std::get<simulated::Faults>(std::move(faults));
    std::string problem = simulated::writeSimulation(folder.simulationFile(), simulation_);
    if (!problem.empty()) return StartError{std::move(problem)};
    // A path that is no UTF-8 can't be written down, and the stand-in would look elsewhere.
    const auto written = simulated::readSimulation(folder.simulationFile());
    const auto* readBack = std::get_if<simulated::Simulation>(&written);
    if (readBack == nullptr || readBack->recording != simulation_.recording) {
      return StartError{"the recording's path can't be written down, it is not UTF-8: " +
                        quotedPath(simulation_.recording)};
    }
    return std::nullopt;
  }

  Problem makeOwner() {
    const int console = outputIsForResults(options_) ? STDERR_FILENO : STDOUT_FILENO;
    owner_ = std::make_unique<linux::LinuxPlatform>(linux::LinuxPlatform::Parts{
        StateFolder(folderPath_), bundle_, embeddedHelper(bundle_), *std::move(machine_),
        simulation_.faults, start_, options_.speed, console, std::move(analytics_)});
    return std::nullopt;
  }

  template <class Value, class Place>
  static Problem keep(std::variant<Value, StartError> made, Place& kept) {
    if (auto* error = std::get_if<StartError>(&made)) return std::move(*error);
    kept = std::get<Value>(std::move(made));
    return std::nullopt;
  }

  const Options& options_;
  Analytics analytics_;
  const SystemClock::TimePoint start_;
  std::string folderPath_;
  std::string bundle_;
  simulated::Simulation simulation_;
  std::optional<simulated::SimulatedMachine> machine_;  // once it is loaded
  std::unique_ptr<PlatformOwner> owner_;
};

}  // namespace

std::variant<std::unique_ptr<PlatformOwner>, StartError> makePlatform(const Options& options,
                                                                      Analytics analytics) {
  return Start(options, std::move(analytics)).make();
}

std::variant<std::vector<std::string>, StartError> listedMachines(const Options& options) {
  const auto asked = simulationFor(options, SystemClock::realNow());
  if (const auto* error = std::get_if<StartError>(&asked)) return *error;
  const auto& simulation = std::get<simulated::Simulation>(asked);
  std::vector<std::string> lines = simulated::machineList();
  if (simulation.recording.empty()) return lines;
  const auto machine = machineOf(simulation);
  if (const auto* error = std::get_if<StartError>(&machine)) return *error;
  const std::string& name = std::get<simulated::SimulatedMachine>(machine).name();
  lines.push_back(simulated::recordingLine(name, simulation.recording));
  return lines;
}

}  // namespace pallimo::app
