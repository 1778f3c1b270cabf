// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace pallimo::tests {

/// An open socket.
class Socket {
 public:
  explicit Socket(int family = AF_INET) : number_(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
  ~Socket() { close(number_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  int number() const { return number_; }

 private:
  const int number_;
};

inline sockaddr_in loopbackPlace(std::uint16_t port) {
  sockaddr_in place = {};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  place.sin_port = htons(port);
  return place;
}

inline bool bindsTo(const Socket& socket, std::uint16_t port) {
  const sockaddr_in place = loopbackPlace(port);
  return bind(socket.number(), reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
}

/// A port of the loopback that nobody listens on, and which the system hands to nobody by itself:
/// those are 32768 and up. Each process looks for its own.
inline std::uint16_t freePort() {
  static std::uint16_t next = static_cast<std::uint16_t>(10000 + getpid() * 7 % 20000);
  for (;;) {
    const std::uint16_t port = next++;
    if (bindsTo(Socket(), port)) return port;
  }
}

/// What the server on that port of the loopback answers to the bytes, up to its end; empty when
/// nobody listens.
inline std::string answerTo(std::uint16_t port, const std::string& request) {
  const Socket socket;
  const sockaddr_in place = loopbackPlace(port);
  const auto* address = reinterpret_cast<const sockaddr*>(&place);
  if (connect(socket.number(), address, sizeof place) != 0) return {};
  if (send(socket.number(), request.data(), request.size(), MSG_NOSIGNAL) < 0) return {};
  std::string answer;
  char buffer[4096];
  for (;;) {
    pollfd waited = {socket.number(), POLLIN, 0};
    if (poll(&waited, 1, 60'000) != 1) return answer;
    const ssize_t size = recv(socket.number(), buffer, sizeof buffer, 0);
    if (size <= 0) return answer;
    answer.append(buffer, static_cast<std::size_t>(size));
  }
}

struct HttpAnswer {
  int status = 0;  ///< 0: nobody answered
  std::string head;
  std::string body;
};

inline HttpAnswer httpGet(std::uint16_t port, const std::string& path) {
  const std::string whole =
      answerTo(port, "GET " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
  const std::size_t end = whole.find("\r\n\r\n");
  const std::size_t space = whole.find(' ');
  if (end == std::string::npos || space == std::string::npos) return {};
  return {std::atoi(whole.c_str() + space), whole.substr(0, end), whole.substr(end + 4)};
}

}  // namespace pallimo::tests
