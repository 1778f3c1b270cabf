// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/notices/session_bus_address.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "adapters/linux/link/dbus_messages.h"

namespace pallimo::adapters::linux {

namespace {

std::optional<std::string> variableOf(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

/// A semicolon within an address is escaped, so that every one stands between two.
std::vector<std::string> unixSocketsOf(std::string_view list) {
  std::vector<std::string> addresses;
  while (!list.empty()) {
    const auto address = list.substr(0, list.find(';'));
    if (address.starts_with("unix:")) addresses.emplace_back(address);
    list.remove_prefix(std::min(list.size(), address.size() + 1));
  }
  return addresses;
}

}  // namespace

std::vector<std::string> sessionBusAddresses(const std::optional<std::string>& variable,
                                             const std::optional<std::string>& runtimeFolder) {
  if (variable && !variable->empty()) return unixSocketsOf(*variable);
  if (runtimeFolder && runtimeFolder->starts_with('/')) {
    return {unixSocketAddress(*runtimeFolder + "/bus")};
  }
  return {};
}

std::vector<std::string> sessionBusAddresses() {
  return sessionBusAddresses(variableOf("DBUS_SESSION_BUS_ADDRESS"), variableOf("XDG_RUNTIME_DIR"));
}

}  // namespace pallimo::adapters::linux
