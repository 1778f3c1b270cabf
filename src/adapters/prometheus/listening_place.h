// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

#include "ports/metrics_server.h"

namespace pallimo::adapters::prometheus {

// Of the addresses that servers of this machine listen on. Any thread.

/// Listens there for a moment, as a server would: nothing when it can be done, else why not, in
/// words that fit behind a colon.
std::optional<std::string> trialListening(const ports::ListenAddress& address);

/// Connects to whoever listens there, and hangs up at once.
void knock(const ports::ListenAddress& address);

}  // namespace pallimo::adapters::prometheus
