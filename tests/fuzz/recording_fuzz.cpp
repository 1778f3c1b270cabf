// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any bytes as a machine.json and as a simulation file: a value or one line, never a crash. The
// sensors of every machine that comes out are read once, as the app reads them.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "adapters/simulated/recordings/recording_reader.h"
#include "adapters/simulated/sensors/current_step.h"
#include "adapters/simulated/sensors/simulated_accelerator_registry.h"
#include "adapters/simulated/sensors/simulated_hid_sensors.h"
#include "adapters/simulated/sensors/simulated_processor_ticks.h"
#include "adapters/simulated/sensors/simulated_smc_device.h"
#include "adapters/simulated/sensors/step_source.h"
#include "adapters/simulated/simulation_file.h"
#include "fuzz/require.h"

namespace {

using namespace pallimo::adapters::simulated;
using namespace pallimo::ports;
using pallimo::fuzz::require;

void requireOneLine(const std::string& message) {
  require(!message.empty());
  for (const char c : message) require(c < 0 || c >= ' ');
}

class StoppedClock final : public pallimo::ports::Clock {
 public:
  std::chrono::system_clock::time_point now() const override { return {}; }
};

// A recording may be long; one walk need not be.
constexpr std::size_t kMostSteps = 8;
constexpr std::uint32_t kMostReads = 4;

void walkSmc(SimulatedSmcDevice& device, const RecordedSmc& smc) {
  const auto handle = device.open();
  require(handle.has_value() == smc.isAvailable);
  if (!handle) return;
  SMCRequestRecord input;
  SMCRequestRecord output;
  for (std::uint32_t index = 0; index <= smc.keys.size(); ++index) {
    input.data8 = static_cast<std::uint8_t>(SMCCommand::keyAtIndex);
    input.data32 = index;
    const bool isListed = index < smc.keys.size() && !smc.keys[index].indexFails;
    require((device.callStructMethod(*handle, kSMCSelector, input, output) == 0) == isListed);
    if (!isListed) continue;
    input.key = output.key;
    for (const auto command : {SMCCommand::readKeyInfo, SMCCommand::readBytes}) {
      input.data8 = static_cast<std::uint8_t>(command);
      static_cast<void>(device.callStructMethod(*handle, kSMCSelector, input, output));
    }
  }
  device.close(*handle);
  require(device.openHandles() == 0);
}

void walkHid(SimulatedHidSensors& hid, const RecordingStep& step) {
  const std::vector<HidMatch> matching{{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 5}};
  const auto client = hid.createClient();
  client->setMatching(matching);
  const auto count = client->copyServices();
  require(count.has_value() == step.hid.has_value());
  for (std::size_t service = 0; service < count.value_or(0); ++service) {
    require(client->integerProperty(service, "LocationID") == (*step.hid)[service].locationID);
    static_cast<void>(client->eventFloat(service, 15, 15 << 16));
  }
}

void walkAccelerators(SimulatedAcceleratorRegistry& registry, const RecordingStep& step) {
  const auto walk = registry.matchingServices("IOAccelerator");
  require(walk.has_value() == step.accelerators.has_value());
  if (!walk) return;
  for (const RecordedAccelerator& accelerator : *step.accelerators) {
    const std::uint32_t entry = registry.next(*walk);
    for (std::uint32_t read = 0; read < kMostReads; ++read) {
      require(registry.properties(entry).has_value() == (read >= accelerator.readFailures));
    }
    registry.release(entry);
  }
  require(registry.next(*walk) == 0);
  registry.release(*walk);
  require(registry.openHandles() == 0);
}

void walkSensors(const std::shared_ptr<const Recording>& recording) {
  const StoppedClock clock;
  CurrentStep now(recordedSteps(recording), clock, 0);
  SimulatedSmcDevice smc(recording->smc, now);
  SimulatedHidSensors hid(now);
  SimulatedAcceleratorRegistry accelerators(now);
  for (std::size_t step = 0; step < std::min(recording->steps.size(), kMostSteps); ++step) {
    now.moveTo(step + 1);
    walkSmc(smc, recording->smc);
    walkHid(hid, recording->steps[step]);
    walkAccelerators(accelerators, recording->steps[step]);
    require(SimulatedProcessorTicks(now).read() == recording->steps[step].ticks);
  }
}

void requireSound(Recording recording) {
  require(!recording.steps.empty());
  require(recording.stepForRequest(recording.steps.size() + 1) == 0);
  for (const SmcKey& key : recording.smc.keys) {
    require(key.key.size() == 4 && key.type.size() == 4);
  }
  walkSensors(std::make_shared<const Recording>(std::move(recording)));
}

void readAsRecording(const std::string& text) {
  auto result = parseRecording(text, "/", [](const std::string& file) {
    return file.size() % 5 == 0 ? "No such file or directory" : "";
  });
  if (const auto* error = std::get_if<RecordingError>(&result)) {
    requireOneLine(error->message);
  } else {
    requireSound(std::get<Recording>(std::move(result)));
  }
}

void readAsSimulation(const std::string& text) {
  const auto result = parseSimulation(text);
  if (const auto* error = std::get_if<SimulationError>(&result)) {
    requireOneLine(error->message);
    return;
  }
  const auto again = parseSimulation(formatSimulation(std::get<Simulation>(result)));
  require(std::get<Simulation>(again) == std::get<Simulation>(result));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  readAsRecording(text);
  readAsSimulation(text);
  return 0;
}
