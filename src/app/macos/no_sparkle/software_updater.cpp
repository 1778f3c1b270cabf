// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/macos/software_updater_choice.h"

#include "adapters/common/no_software_updater.h"

namespace pallimo::app::macos {

std::unique_ptr<ports::SoftwareUpdater> softwareUpdater() {
  return std::make_unique<adapters::common::NoSoftwareUpdater>("this build has no updater");
}

}  // namespace pallimo::app::macos
