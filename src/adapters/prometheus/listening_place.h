// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>

#include "ports/metrics_server.h"

namespace pallimo::adapters::prometheus {

// Of the addresses that servers of this machine listen on. Any thread.

/// Listens there for a moment, as a server would: nothing when it can be done, else why not, in
/// words that fit behind a colon. An address of several machines (multicast, broadcast) can't be.
std::optional<std::string> trialListening(const ports::ListenAddress& address);

/// Connects to whoever listens there, and hangs up at once. Takes 50 ms at most.
void knock(const ports::ListenAddress& address);

}  // namespace pallimo::adapters::prometheus
