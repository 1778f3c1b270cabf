// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "updates/sparkle_updater.h"

namespace pallimo::updates {

std::shared_ptr<SparkleUpdater> SparkleUpdater::create(const Services& services) {
  return std::shared_ptr<SparkleUpdater>(new SparkleUpdater(services));
}

void SparkleUpdater::checkForUpdates() {
  if (const auto error = services_.updater.start()) {
    services_.console.writeLine("error " + *error);
    return;
  }
  services_.updater.checkForUpdates();
}

}  // namespace pallimo::updates
