// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/property_list.h"
#include "ports/program_launcher.h"
#include "ports/property_list_reader.h"

namespace pallimo::sensors {

/// The system profiler's reports. Stateless; blocks while the profiler runs, which takes a good
/// part of a second on a Mac.
class SGSystemProfiler {
 public:
  /// Both outlive the object.
  SGSystemProfiler(ports::ProgramLauncher& launcher, const ports::PropertyListReader& reader)
      : launcher_(launcher), reader_(reader) {}

  /// The first item of the report on a type of data ("SPDisplaysDataType"), a dictionary; nothing
  /// when there is no report or it has another shape.
  std::optional<base::PropertyList> profilerItem(const std::string& dataType) const;
  /// The GPU's cores; -1 when unknown.
  std::int64_t gpuCoreCount() const;

 private:
  ports::ProgramLauncher& launcher_;
  const ports::PropertyListReader& reader_;
};

}  // namespace pallimo::sensors
