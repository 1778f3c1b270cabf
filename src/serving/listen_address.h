// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "ports/metrics_server.h"

namespace pallimo::serving {

/// Where figures are served when no address is named: to programs of this machine alone.
inline constexpr std::string_view kLoopback = "127.0.0.1";

/// What is wrong with an address.
enum class AddressProblem {
  notAnAddressAndPort,  ///< not of the form ADDRESS:PORT
  notNumeric,           ///< before the port stands no numeric address
  portOutOfRange,       ///< the port is a number, but none from 1 to 65535
};

/// Reads "127.0.0.1:9123", "[::1]:9123" or "localhost:9123"; of ":9123" and "9123" the address is
/// the loopback. Other names are not looked up: a name may stand for several addresses, and nobody
/// would see which one is served. Pure.
std::variant<ports::ListenAddress, AddressProblem> parseListenAddress(std::string_view text);

/// As it was read: an address of IPv6 in brackets.
std::string textOf(const ports::ListenAddress& address);

}  // namespace pallimo::serving
