// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "adapters/simulated/faults/faults.h"

namespace pallimo::adapters::simulated {

/// What is simulated, written by the app at every start and read by the stand-in at every request,
/// so that an installed helper always follows the app that runs. Only the faults are somebody
/// else's, a person's or a test's: the app keeps those that it finds, and the helper reads its own
/// once, at its start.
struct Simulation {
  std::string machine;     ///< name of a built-in machine; empty when a recording is used
  std::string recording;   ///< absolute path of a recording's folder; empty otherwise
  std::uint64_t seed = 1;  ///< of the built-in machine's load
  double speed = 1;        ///< how many times faster than real time, 1 to 100
  double startTime = 0;    ///< seconds since 1970 when the simulated time began
  Faults faults = {};      ///< what goes wrong on purpose
  bool operator==(const Simulation&) const = default;
};

/// One line that says what is wrong, fit for a user.
struct SimulationError {
  std::string message;
};

/// The file's text. JSON, version 1; without the key "faults" when none is planned.
std::string formatSimulation(const Simulation& simulation);
/// The opposite. Unknown keys, wrong types and values out of range are errors.
std::variant<Simulation, SimulationError> parseSimulation(const std::string& text);

std::variant<Simulation, SimulationError> readSimulation(const std::string& path);
/// The faults that stand in the file; none when it is absent or broken.
Faults plannedFaults(const std::string& path);
/// The same for who is about to rewrite the file: faults that somebody has written down and that
/// can't be read are an error, so that a slip of the pen is not taken for a plan without faults.
std::variant<Faults, SimulationError> keptFaults(const std::string& path);
/// Replaces the file atomically (a reader sees the old text or the new one), mode 0600. Two writers
/// at once take turns. Returns an empty text, or what went wrong.
std::string writeSimulation(const std::string& path, const Simulation& simulation);

/// Names of the environment entries that the helper hands to the stand-in: the path of the file
/// above, and the number of the request within its connection, counted from 1.
inline constexpr const char* kSimulationVariable = "PALLIMO_SIMULATION";
inline constexpr const char* kRequestVariable = "PALLIMO_REQUEST";

}  // namespace pallimo::adapters::simulated
