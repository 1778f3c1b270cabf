// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/no_software_updater.h"

namespace pallimo::adapters::linux {

std::optional<std::string> NoSoftwareUpdater::start() {
  return "updates are only available in the macOS app";
}

}  // namespace pallimo::adapters::linux
