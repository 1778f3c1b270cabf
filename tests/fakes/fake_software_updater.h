// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ports/software_updater.h"

namespace pallimo::fakes {

/// An updater that starts, unless the test says otherwise. Test's thread.
class FakeSoftwareUpdater final : public ports::SoftwareUpdater {
 public:
  /// What start() fails with.
  std::optional<std::string> startError;
  /// "start" and "checkForUpdates", in the order of the calls.
  std::vector<std::string> calls;

  std::optional<std::string> start() override {
    calls.emplace_back("start");
    return startError;
  }
  void checkForUpdates() override { calls.emplace_back("checkForUpdates"); }
};

}  // namespace pallimo::fakes
