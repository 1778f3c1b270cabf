// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Any bytes as a machine.json and as a simulation file: a value or one line, never a crash.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "adapters/simulated/recording_reader.h"
#include "adapters/simulated/simulation_file.h"

namespace {

using namespace pallimo::adapters::simulated;

void require(bool holds) {
  if (!holds) std::abort();
}

void requireOneLine(const std::string& message) {
  require(!message.empty());
  for (const char c : message) require(c < 0 || c >= ' ');
}

void requireSound(const Recording& recording) {
  require(!recording.steps.empty());
  require(recording.stepForRequest(recording.steps.size() + 1) == 0);
  for (std::size_t step = 0; step < recording.steps.size(); ++step) {
    for (const SmcKey& key : recording.smc.keys) {
      require(key.key.size() == 4 && key.type.size() == 4);
      static_cast<void>(recording.smcBytes(step, key.key));
    }
  }
}

void readAsRecording(const std::string& text) {
  const auto result = parseRecording(text, "/", [](const std::string& file) {
    return file.size() % 5 == 0 ? "No such file or directory" : "";
  });
  if (const auto* error = std::get_if<RecordingError>(&result)) {
    requireOneLine(error->message);
  } else {
    requireSound(std::get<Recording>(result));
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
