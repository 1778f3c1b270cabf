// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenarios/faulty_mac.h"

namespace pallimo::scenarios {

/// The parts of a row that are figures, as the log prints them; nothing where a fault leaves them
/// alone.
struct FigureEffect {
  std::optional<std::string> power = {};           ///< package, CPU, DRAM, ANE, GPU
  std::optional<std::string> frequency = {};       ///< E, P, GPU
  std::optional<std::string> cpuTemperature = {};  ///< minimum, average, maximum
  std::optional<std::string> gpuTemperature = {};
  std::optional<std::string> gpuUtilization = {};
};

/// What a fault does beside the figures.
struct OtherEffect {
  std::optional<std::string> log = {};
  std::optional<std::string> update = {};
  /// With which status and line a run ends that prints a row.
  std::optional<std::string> endAtRow = {};
};

/// One way in which one port fails. It lasts: the world is changed by `set` from its begin to its
/// end, and `begins` happens once.
struct Fault {
  std::string name;
  std::string port;
  std::function<void(FaultyWorld&)> set = [](FaultyWorld&) {};
  FigureEffect figures = {};
  OtherEffect other = {};
  std::function<void(FaultyMac&)> begins = [](FaultyMac&) {};
};

/// Where two faults say something about the same figures, the later one of the list counts. These
/// are the pairs in which that is not so.
struct Interaction {
  std::string one;
  std::string another;
  FigureEffect figures = {};
  OtherEffect other = {};
};

/// In the order in which they count. On a Mac whose temperatures are the SMC's, those of the HID
/// sensors do nothing, and the other way round.
const std::vector<Fault>& runningFaults();
const std::vector<Interaction>& interactions();

/// The names that the expectation knows beside the list.
namespace fault_name {
inline constexpr const char* kGlitch = "Tg05 reads 7";
inline constexpr const char* kHelperDies = "the helper dies and its successor hangs";
inline constexpr const char* kInvalidated = "the connection becomes invalid";
}  // namespace fault_name

}  // namespace pallimo::scenarios
