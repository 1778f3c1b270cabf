// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/listen_address.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>

namespace pallimo::serving {

namespace {

using ports::ListenAddress;

constexpr unsigned kHighestPort = 65535;

bool isDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// 0 for what is no port.
std::uint16_t portIn(std::string_view digits) {
  unsigned port = 0;
  for (const char digit : digits) {
    port = port * 10 + static_cast<unsigned>(digit - '0');
    if (port > kHighestPort) return 0;
  }
  return static_cast<std::uint16_t>(port);
}

bool isNumeric(const std::string& host, int family) {
  unsigned char bytes[sizeof(in6_addr)];
  return inet_pton(family, host.c_str(), bytes) == 1;
}

}  // namespace

std::variant<ListenAddress, AddressProblem> parseListenAddress(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  std::string_view host =
      colon == std::string_view::npos ? std::string_view() : text.substr(0, colon);
  const std::string_view port = colon == std::string_view::npos ? text : text.substr(colon + 1);
  if (!isDigits(port)) return AddressProblem::notAnAddressAndPort;

  const bool isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (isBracketed) host = host.substr(1, host.size() - 2);
  // Without brackets nobody can tell an address of IPv6 from its port.
  if (!isBracketed && host.find(':') != std::string_view::npos) {
    return AddressProblem::notAnAddressAndPort;
  }
  if (!isBracketed && (host.empty() || host == "localhost")) host = kLoopback;

  const ListenAddress address = {std::string(host), portIn(port)};
  if (!isNumeric(address.host, isBracketed ? AF_INET6 : AF_INET)) return AddressProblem::notNumeric;
  if (address.port == 0) return AddressProblem::portOutOfRange;
  return address;
}

std::string textOf(const ListenAddress& address) {
  const bool isBracketed = address.host.find(':') != std::string::npos;
  return (isBracketed ? "[" + address.host + "]" : address.host) + ":" +
         std::to_string(address.port);
}

}  // namespace pallimo::serving
