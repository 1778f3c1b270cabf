// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/macos/software_updater_choice.h"

#include "adapters/macos/objc_adapters.h"

namespace pallimo::app::macos {

std::unique_ptr<ports::SoftwareUpdater> softwareUpdater() {
  return adapters::macos::makeSoftwareUpdater();
}

}  // namespace pallimo::app::macos
