// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

#include "app/start/command_line.h"

namespace pallimo::app {

/// Whether the analytics server is told of this run: of a launch that somebody sees, where the
/// server's address and the user's environment allow it. `doNotTrack` is the value of DO_NOT_TRACK,
/// nullptr when it is not set. Pure.
bool isToldLaunch(const Options& options, std::string_view analyticsURL, const char* doNotTrack);

}  // namespace pallimo::app
