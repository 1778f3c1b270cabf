// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>

namespace pallimo::ports {

/// What the system tells a process about the system. Any thread.
class ProcessInformation {
 public:
  virtual ~ProcessInformation() = default;

  /// The system's version for people to read ("Version 14.5 (Build 23F79)").
  virtual std::string operatingSystemVersionString() const = 0;
};

}  // namespace pallimo::ports
