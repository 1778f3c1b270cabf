// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace pallimo::adapters::linux {

/// Where the user's session bus may be found, to be tried in this order; nothing when there is
/// none. Pure.
///
/// `variable` is DBUS_SESSION_BUS_ADDRESS; without it, the bus is looked for where systemd puts
/// it, in `runtimeFolder` (XDG_RUNTIME_DIR). Only sockets of this machine are named: the other
/// kinds of address would start a program (a bus of our own, for one) or look up names in a
/// network.
std::vector<std::string> sessionBusAddresses(const std::optional<std::string>& variable,
                                             const std::optional<std::string>& runtimeFolder);

/// The same of the process's environment, which nobody may change meanwhile.
std::vector<std::string> sessionBusAddresses();

}  // namespace pallimo::adapters::linux
