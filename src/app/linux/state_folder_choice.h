// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <variant>

#include "app/start/command_line.h"
#include "app/start/make_platform.h"

namespace pallimo::app::linux {

/// The absolute path of the state folder that the options name, else $XDG_STATE_HOME/pallimo, else
/// ~/.local/state/pallimo.
std::variant<std::string, StartError> stateFolderPath(const Options& options);

}  // namespace pallimo::app::linux
