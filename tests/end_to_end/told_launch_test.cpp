// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "end_to_end/app_fixture.h"
#include "end_to_end/app_process.h"

namespace pallimo::end_to_end {
namespace {

/// The user's proxy, and behind it the analytics server: on one port of this machine.
class ProxiedServer {
 public:
  ProxiedServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* place = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(listener_, place, size), 0);
    EXPECT_EQ(listen(listener_, 8), 0);
    EXPECT_EQ(getsockname(listener_, place, &size), 0);
    port_ = ntohs(address.sin_port);
  }
  ~ProxiedServer() { close(listener_); }
  ProxiedServer(const ProxiedServer&) = delete;
  ProxiedServer& operator=(const ProxiedServer&) = delete;

  std::string variable() const {
    return "http_proxy=http://127.0.0.1:" + std::to_string(port_) + "/";
  }

  /// The request line that comes through the proxy's tunnel within the time; nothing when no one
  /// connects.
  std::optional<std::string> requestWithin(int milliseconds) {
    if (!isReadable(listener_, milliseconds)) return std::nullopt;
    const int peer = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    std::string line = headOf(peer);
    if (line.rfind("CONNECT ", 0) == 0) {
      tunnels_.push_back(line);
      answer(peer, "HTTP/1.1 200 Connection established\r\n\r\n");
      line = headOf(peer);
    }
    answer(peer, "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n");
    close(peer);
    return line;
  }
  const std::vector<std::string>& tunnels() const { return tunnels_; }

 private:
  static bool isReadable(int descriptor, int milliseconds) {
    pollfd waited = {descriptor, POLLIN, 0};
    return poll(&waited, 1, milliseconds) == 1;
  }
  /// The first line of what comes up to an empty line.
  static std::string headOf(int peer) {
    std::string head;
    char byte = 0;
    constexpr int kGenerousMs = 20'000;
    while (head.find("\r\n\r\n") == std::string::npos && isReadable(peer, kGenerousMs) &&
           read(peer, &byte, 1) == 1) {
      head += byte;
    }
    return head.substr(0, head.find("\r\n"));
  }
  static void answer(int peer, const std::string& text) {
    EXPECT_EQ(send(peer, text.data(), text.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(text.size()));
  }

  const int listener_;
  int port_ = 0;
  std::vector<std::string> tunnels_;
};

/// The real app, built to tell a server of its launches.
class ToldLaunch : public AppTest {
 protected:
  using Texts = std::vector<std::string>;
  static constexpr int kLong = 20'000;  // ms, for what must come
  static constexpr int kShort = 1'000;  // ms, for what must not

  std::unique_ptr<AppProcess> launch(Texts arguments, Texts environment = {}) {
    arguments.insert(arguments.begin(), {"--state-dir", stateFolder()});
    environment.insert(environment.begin(),
                       {"QT_QPA_PLATFORM=offscreen", "no_proxy=", server_.variable()});
    AppProcess::Conditions conditions;
    conditions.program = PALLIMO_TELLING_APP;
    return std::make_unique<AppProcess>(arguments, root_ / "err", environment, std::nullopt,
                                        conditions);
  }
  static void end(AppProcess& app) {
    app.send(SIGTERM);
    EXPECT_EQ(app.exitStatus(), 0);
  }
  static std::string parameter(const std::string& request, const std::string& name) {
    const std::size_t at = request.find("&" + name + "=");
    if (at == std::string::npos) return "none";
    const std::size_t begin = at + name.size() + 2;
    return request.substr(begin, request.find_first_of("& ", begin) - begin);
  }

  ProxiedServer server_;
};

TEST_F(ToldLaunch, IsOneRequest) {
  const auto app = launch({});
  const auto request = server_.requestWithin(kLong);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->rfind("GET /piwik.php?", 0), 0u) << *request;
  EXPECT_EQ(parameter(*request, "e_c"), "com.ostrovane.pallimo");
  EXPECT_EQ(parameter(*request, "idsite"), "2");
  EXPECT_EQ(server_.requestWithin(kShort), std::nullopt);
  EXPECT_EQ(server_.tunnels(), Texts{"CONNECT analytics.pallimo.example:80 HTTP/1.1"});
  end(*app);
}

TEST_F(ToldLaunch, CarriesTheSameVisitorTheNextTime) {
  const auto first = launch({});
  const auto request = server_.requestWithin(kLong);
  end(*first);
  const auto second = launch({});
  const auto next = server_.requestWithin(kLong);
  end(*second);
  ASSERT_TRUE(request && next);
  EXPECT_EQ(parameter(*request, "_id").size(), 16u);
  EXPECT_EQ(parameter(*request, "_id"), parameter(*next, "_id"));
}

TEST_F(ToldLaunch, IsNoneOfAUserWhoSaidNo) {
  const auto app = launch({}, {"DO_NOT_TRACK=1"});
  EXPECT_EQ(server_.requestWithin(kShort), std::nullopt);
  end(*app);
}

TEST_F(ToldLaunch, IsNoHeadlessRun) {
  const auto app = launch({"--headless"});
  EXPECT_EQ(server_.requestWithin(kShort), std::nullopt);
}

TEST_F(ToldLaunch, EndsAtOnceWhileTheServerSaysNothing) {
  const auto app = launch({});
  EXPECT_EQ(app->readLine(), "connectionInvalidationHandler");  // it is up; nobody answers
  end(*app);
}

}  // namespace
}  // namespace pallimo::end_to_end
