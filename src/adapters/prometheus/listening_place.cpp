// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/listening_place.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
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

constexpr int kAnswerLimit = 50;  // ms

constexpr const char* kAnothersAddress = "the address is not this machine's";

/// A socket that no child inherits: the app starts some.
class OwnSocket {
 public:
  explicit OwnSocket(const SocketPlace& place)
      : number_(socket(place.storage.ss_family, SOCK_STREAM, 0)) {
    // By itself, for not every system can say so when it makes one.
    if (isOpen()) fcntl(number_, F_SETFD, FD_CLOEXEC);
  }
  ~OwnSocket() {
    if (isOpen()) close(number_);
  }
  OwnSocket(const OwnSocket&) = delete;
  OwnSocket& operator=(const OwnSocket&) = delete;

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  const int number_;
};

bool isBroadcastOfAnInterface(const in_addr& address) {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) != 0) return false;
  bool isFound = false;
  for (const ifaddrs* one = first; one != nullptr && !isFound; one = one->ifa_next) {
    if ((one->ifa_flags & IFF_BROADCAST) == 0 || one->ifa_broadaddr == nullptr) continue;
    if (one->ifa_broadaddr->sa_family != AF_INET) continue;
    const auto* everybody = reinterpret_cast<const sockaddr_in*>(one->ifa_broadaddr);
    isFound = everybody->sin_addr.s_addr == address.s_addr;
  }
  freeifaddrs(first);
  return isFound;
}

/// Whether it stands for several machines: the system lets a server bind to such an address, which
/// nobody can then connect to.
bool isOfSeveralMachines(const SocketPlace& place) {
  if (place.storage.ss_family == AF_INET6) {
    const auto* six = reinterpret_cast<const sockaddr_in6*>(&place.storage);
    return six->sin6_addr.s6_addr[0] == 0xff;
  }
  const auto* four = reinterpret_cast<const sockaddr_in*>(&place.storage);
  const std::uint32_t address = ntohl(four->sin_addr.s_addr);
  const bool isMulticast = address >> 28 == 0xe;
  const bool isBroadcast = address == 0xffffffff || address == 0x7fffffff;
  return isMulticast || isBroadcast || isBroadcastOfAnInterface(four->sin_addr);
}

std::string reasonFor(int error) {
  switch (error) {
    case EADDRINUSE:
      return "the port is in use";
    case EADDRNOTAVAIL:
    case EAFNOSUPPORT:
      return kAnothersAddress;
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
  if (isOfSeveralMachines(place)) return kAnothersAddress;
  const OwnSocket socket(place);
  const int error = socket.isOpen() ? errorOfListening(socket.number(), place) : errno;
  if (error == 0) return std::nullopt;
  return reasonFor(error);
}

void knock(const ports::ListenAddress& address) {
  const SocketPlace place = placeOf(address);
  const OwnSocket socket(place);
  if (!socket.isOpen()) return;
  fcntl(socket.number(), F_SETFL, O_NONBLOCK);
  // Whether anybody answers is none of our business, and not worth a long wait.
  if (connect(socket.number(), place.address(), place.size) == 0) return;
  if (errno != EINPROGRESS) return;
  pollfd answered = {socket.number(), POLLOUT, 0};
  static_cast<void>(poll(&answered, 1, kAnswerLimit));
}

}  // namespace pallimo::adapters::prometheus
