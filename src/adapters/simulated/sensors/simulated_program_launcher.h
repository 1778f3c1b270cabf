// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "ports/program_launcher.h"

namespace pallimo::adapters::simulated {

/// The programs of a simulated machine: "/usr/sbin/system_profiler", started with exactly "-xml"
/// and one data type, and no other. Any thread.
class SimulatedProgramLauncher final : public ports::ProgramLauncher {
 public:
  /// The report on a type of data ("SPDisplaysDataType"); nothing when the profiler can't be
  /// started for it. Called on any thread.
  using Reports = std::function<std::optional<base::Bytes>(const std::string& dataType)>;

  explicit SimulatedProgramLauncher(Reports reports);

  std::optional<base::Bytes> run(const std::string& path,
                                 const std::vector<std::string>& arguments) override;

 private:
  const Reports reports_;
};

}  // namespace pallimo::adapters::simulated
