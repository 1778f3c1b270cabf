// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string_view>

#include "adapters/common/poll_loop.h"
#include "ports/helper_listener.h"

namespace pallimo::helper {

/// The helper's end of the link: serves the Mach service of that name to programs that meet the
/// code-signing requirement, and to nobody else; the system checks every message against it. With a
/// requirement that the system can't read, start() fails.
///
/// The system calls from threads of its own; everything reaches the delegate on the loop's thread,
/// in the order of each connection. launchd owns the name, so that a client that comes between
/// stop() and the process's end starts the next helper.
std::unique_ptr<ports::HelperListener> makeXpcListener(adapters::common::PollLoop& loop,
                                                       std::string_view machServiceName,
                                                       std::string_view requirement);

}  // namespace pallimo::helper
