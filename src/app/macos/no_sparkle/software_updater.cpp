// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/macos/software_updater_choice.h"

namespace pallimo::app::macos {

std::unique_ptr<ports::SoftwareUpdater> softwareUpdater() { return nullptr; }

}  // namespace pallimo::app::macos
