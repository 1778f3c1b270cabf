// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/prometheus_metrics_server.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "adapters/prometheus/listening_place.h"
#include "fakes/local_http.h"

namespace pallimo::adapters::prometheus {
namespace {

using tests::httpGet;
using Problem = std::optional<std::string>;

ports::MetricFamilies oneFigure(double value) {
  return {{"pallimo_power_watts", "P.", ports::MetricFamily::Kind::gauge, {{{}, value}}}};
}

Problem problemOfListening(const ports::ListenAddress& address) {
  PrometheusMetricsServer server;
  return server.listen(address, [] { return ports::MetricFamilies(); });
}

TEST(PrometheusMetricsServer, TellsAtEachScrapeWhatThereIsToSay) {
  const std::uint16_t port = tests::freePort();
  std::atomic<int> figure = 1;
  PrometheusMetricsServer server;
  ASSERT_EQ(server.listen({"127.0.0.1", port}, [&] { return oneFigure(figure); }), std::nullopt);
  EXPECT_NE(httpGet(port, "/metrics").body.find("\npallimo_power_watts 1\n"), std::string::npos);
  figure = 2;
  const tests::HttpAnswer answer = httpGet(port, "/metrics");
  EXPECT_EQ(answer.status, 200);
  EXPECT_NE(answer.head.find("Content-Type: text/plain"), std::string::npos) << answer.head;
  EXPECT_NE(answer.body.find("\npallimo_power_watts 2\n"), std::string::npos) << answer.body;
}

TEST(PrometheusMetricsServer, HasNothingElseToTell) {
  const std::uint16_t port = tests::freePort();
  PrometheusMetricsServer server;
  ASSERT_EQ(server.listen({"127.0.0.1", port}, [] { return oneFigure(1); }), std::nullopt);
  for (const char* path : {"/", "/metric", "/etc/passwd", "/../../etc/passwd"}) {
    EXPECT_EQ(httpGet(port, path).status, 404) << path;
  }
}

TEST(PrometheusMetricsServer, AScrapeThatStopsHalfWayLeavesRoomForOthers) {
  const std::uint16_t port = tests::freePort();
  PrometheusMetricsServer server;
  ASSERT_EQ(server.listen({"127.0.0.1", port}, [] { return oneFigure(1); }), std::nullopt);
  const tests::Socket silent[3];
  const sockaddr_in place = tests::loopbackPlace(port);
  for (const tests::Socket& socket : silent) {
    const auto* address = reinterpret_cast<const sockaddr*>(&place);
    ASSERT_EQ(connect(socket.number(), address, sizeof place), 0);
    ASSERT_EQ(send(socket.number(), "GET /m", 6, MSG_NOSIGNAL), 6);
  }
  EXPECT_EQ(httpGet(port, "/metrics").status, 200);
}

/// s that a server takes to go after a scrape.
double timeToGo() {
  const std::uint16_t port = tests::freePort();
  auto server = std::make_unique<PrometheusMetricsServer>();
  EXPECT_EQ(server->listen({"127.0.0.1", port}, [] { return oneFigure(1); }), std::nullopt);
  EXPECT_EQ(httpGet(port, "/metrics").status, 200);
  const auto begin = std::chrono::steady_clock::now();
  server.reset();
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  EXPECT_EQ(httpGet(port, "/metrics").status, 0);
  return took.count();
}

TEST(PrometheusMetricsServer, GoesWithoutAWaitAndNobodyAnswers) {
  // Two seconds each time without the knocking, some milliseconds with it: a busy machine may be
  // slow now and then, but not always.
  double quickest = timeToGo();
  for (int again = 0; again < 9 && quickest > 1.5; ++again) {
    quickest = std::min(quickest, timeToGo());
  }
  EXPECT_LT(quickest, 1.5);
}

TEST(PrometheusMetricsServer, TakesNoAddressOfSeveralMachines) {
  for (const char* host :
       {"224.0.0.1", "239.255.255.255", "255.255.255.255", "127.255.255.255", "ff02::1"}) {
    EXPECT_EQ(problemOfListening({host, tests::freePort()}),
              Problem("the address is not this machine's"))
        << host;
  }
}

TEST(PrometheusMetricsServer, KnockingWhereNobodyListensIsNoWaitAndNoHarm) {
  knock({"127.0.0.1", tests::freePort()});
  knock({"nonsense", 1});
}

TEST(PrometheusMetricsServer, SaysThatThePortIsInUse) {
  const tests::Socket other;
  const std::uint16_t port = tests::freePort();
  ASSERT_TRUE(tests::bindsTo(other, port));
  ASSERT_EQ(listen(other.number(), 1), 0);
  EXPECT_EQ(problemOfListening({"127.0.0.1", port}), Problem("the port is in use"));
}

TEST(PrometheusMetricsServer, SaysThatTheAddressIsAnother) {
  // An address for documentation: nobody has it.
  EXPECT_EQ(problemOfListening({"192.0.2.1", tests::freePort()}),
            Problem("the address is not this machine's"));
  EXPECT_EQ(problemOfListening({"2001:db8::1", tests::freePort()}),
            Problem("the address is not this machine's"));
}

TEST(PrometheusMetricsServer, SaysThatItCannotDoIPv6IfSo) {
  const std::uint16_t port = tests::freePort();
  const Problem problem = problemOfListening({"::1", port});
  // Its own: a library that can do it, or a machine without an IPv6 loopback.
  if (!problem || problem == "the address is not this machine's") return;
  EXPECT_EQ(problem, Problem("this build's web server takes no addresses of IPv6"));
}

TEST(PrometheusMetricsServer, ListensOnEveryAddressOfTheMachineWhenToldTo) {
  const std::uint16_t port = tests::freePort();
  PrometheusMetricsServer server;
  ASSERT_EQ(server.listen({"0.0.0.0", port}, [] { return oneFigure(1); }), std::nullopt);
  EXPECT_EQ(httpGet(port, "/metrics").status, 200);
}

}  // namespace
}  // namespace pallimo::adapters::prometheus
