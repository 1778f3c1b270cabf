// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <utility>

#include "ports/process_information.h"

namespace pallimo::fakes {

/// A system of the version that the test sets, at first "Version 14.5 (Build 23F79)". Set before
/// use.
class FakeProcessInformation final : public ports::ProcessInformation {
 public:
  void setOperatingSystemVersionString(std::string version) { version_ = std::move(version); }

  std::string operatingSystemVersionString() const override { return version_; }

 private:
  std::string version_ = "Version 14.5 (Build 23F79)";
};

}  // namespace pallimo::fakes
