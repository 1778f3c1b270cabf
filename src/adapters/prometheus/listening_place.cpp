// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/listening_place.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace pallimo::adapters::prometheus {

namespace {

struct SocketPlace {
  sockaddr_storage storage = {};
  socklen_t size = 0;

  const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&storage); }
};

SocketPlace placeOf(const ports::ListenAddress& address) {
  SocketPlace place;
  auto* four = reinterpret_cast<sockaddr_in*>(&place.storage);
  auto* six = reinterpret_cast<sockaddr_in6*>(&place.storage);
  if (inet_pton(AF_INET, address.host.c_str(), &four->sin_addr) == 1) {
    place.storage.ss_family = AF_INET;
    four->sin_port = htons(address.port);
    place.size = sizeof *four;
  } else if (inet_pton(AF_INET6, address.host.c_str(), &six->sin6_addr) == 1) {
    place.storage.ss_family = AF_INET6;
    six->sin6_port = htons(address.port);
    place.size = sizeof *six;
  }
  return place;
}

std::string reasonFor(int error) {
  switch (error) {
    case EADDRINUSE:
      return "the port is in use";
    case EADDRNOTAVAIL:
    case EAFNOSUPPORT:
      return "the address is not this machine's";
    case EACCES:
      return "the port is reserved for root";
    default:
      return std::strerror(error);
  }
}

/// The error's number, or 0.
int errorOfListening(int descriptor, const SocketPlace& place) {
  // As servers do: connections of the past that still linger are no reason.
  const int on = 1;
  setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (bind(descriptor, place.address(), place.size) != 0) return errno;
  return listen(descriptor, 1) == 0 ? 0 : errno;
}

}  // namespace

std::optional<std::string> trialListening(const ports::ListenAddress& address) {
  const SocketPlace place = placeOf(address);
  const int descriptor = socket(place.storage.ss_family, SOCK_STREAM, 0);
  if (descriptor < 0) return reasonFor(errno);
  const int error = errorOfListening(descriptor, place);
  close(descriptor);
  if (error == 0) return std::nullopt;
  return reasonFor(error);
}

void knock(const ports::ListenAddress& address) {
  const SocketPlace place = placeOf(address);
  const int descriptor = socket(place.storage.ss_family, SOCK_STREAM, 0);
  if (descriptor < 0) return;
  // Whether anybody answers is none of our business.
  static_cast<void>(connect(descriptor, place.address(), place.size));
  close(descriptor);
}

}  // namespace pallimo::adapters::prometheus
