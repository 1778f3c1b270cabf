// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "ports/software_updater.h"

namespace pallimo::app::macos {

/// The updater of this build: Sparkle, or one that never starts in a build that has no key for
/// releases. Never null. The build picks one of two definitions.
std::unique_ptr<ports::SoftwareUpdater> softwareUpdater();

}  // namespace pallimo::app::macos
