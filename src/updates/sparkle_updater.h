// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "ports/console.h"
#include "ports/software_updater.h"

namespace pallimo::updates {

/// Looks for a newer version of the app when the user asks for it. Where the new version is found
/// and how the user is asked is the updater's own business. Main thread.
class SparkleUpdater final {
 public:
  /// What it uses; all of it outlives the object.
  struct Services {
    ports::SoftwareUpdater& updater;
    ports::Console& console;
  };

  /// Starts nothing: an updater that runs may go on line by itself.
  static std::shared_ptr<SparkleUpdater> create(const Services& services);

  /// Starts the updater, also when an earlier check has started it, and lets it check. When it
  /// can't be started, one line on the console says why and the user sees nothing.
  void checkForUpdates();

 private:
  explicit SparkleUpdater(const Services& services) : services_(services) {}

  const Services services_;
};

}  // namespace pallimo::updates
