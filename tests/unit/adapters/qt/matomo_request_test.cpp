// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The event of a launch on its whole way: from the tracker over a real connection to a server that
// reads it as Matomo's does.

#include <gtest/gtest.h>

#include <QByteArray>
#include <QList>
#include <QTimer>
#include <chrono>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "adapters/qt/qt_http_client.h"
#include "analytics/matomo_tracker.h"
#include "base/civil_time.h"
#include "unit/adapters/qt/event_loop.h"
#include "unit/adapters/qt/local_http_server.h"
#include "unit/analytics/tracked_app.h"

namespace pallimo::adapters::qt {
namespace {

using analytics::MatomoTracker;
using nlohmann::json;
using Parameters = std::map<std::string, std::string>;

/// As PHP reads a query: plus signs are blanks, and a repeated parameter keeps its last value.
Parameters parametersOf(const QByteArray& query) {
  Parameters parameters;
  for (const QByteArray& piece : query.split('&')) {
    const auto decoded = [](QByteArray text) {
      return QByteArray::fromPercentEncoding(text.replace('+', ' ')).toStdString();
    };
    const auto equals = piece.indexOf('=');
    parameters[decoded(piece.left(equals))] = decoded(piece.mid(equals + 1));
  }
  return parameters;
}

class MatomoRequest : public testing::Test {
 protected:
  MatomoRequest() {
    for (const char* name : {"http_proxy", "all_proxy", "HTTP_PROXY", "ALL_PROXY"}) qunsetenv(name);
  }

  /// A launch of the app, until its request is answered or given up.
  void launch() {
    QtHttpClient client;
    MatomoTracker(app_.services(client), server_.url()).track();
    QTimer ticks;  // the request's end has no event
    ticks.start(1);
    ASSERT_TRUE(loop_.runUntil([&client] { return client.underWay() == 0; }));
  }

  /// The path and the parameters of the one request that a launch sends.
  std::pair<std::string, Parameters> sent() {
    const std::size_t before = server_.requests().size();
    launch();
    if (server_.requests().size() != before + 1) return {};
    const QByteArray line = server_.requests().back().split('\r').front();
    const QList<QByteArray> words = line.split(' ');
    if (words.size() != 3 || words[0] != "GET" || words[2] != "HTTP/1.1") return {};
    const auto mark = words[1].indexOf('?');
    return {words[1].left(mark).toStdString(), parametersOf(words[1].mid(mark + 1))};
  }

  EventLoop loop_;
  LocalHttpServer server_;
  analytics::TrackedApp app_;
};

TEST_F(MatomoRequest, TheServerReadsEveryParameter) {
  app_.clock.set(std::chrono::sys_days(std::chrono::year{2024} / 2 / 29) +
                 std::chrono::seconds(86399));
  const auto local = base::localTime(app_.clock.now());
  auto [path, parameters] = sent();
  EXPECT_EQ(path, "/piwik.php");
  const json variables = {{"1", {"Platform", "Mac14,9"}},
                          {"2", {"OS version", "Version 14.5 (Build 23F79)"}},
                          {"3", {"App version", "345"}},
                          {"4", {"Monitors", "1"}},
                          {"5", {"App version", "Pallimo"}}};
  EXPECT_EQ(json::parse(parameters["_cvar"]), variables);
  parameters.erase("_cvar");
  const Parameters expected = {{"_id", "0123456789ab4def"},
                               {"_idts", "0"},
                               {"_idvc", "1"},
                               {"_viewts", "0"},
                               {"apiv", "1"},
                               {"cdt", "2024-02-29 23:59:59"},
                               {"e_a", "SW Version"},
                               {"e_c", "com.ostrovane.pallimo"},
                               {"e_n", "1.2"},
                               {"e_v", "1"},
                               {"h", std::to_string(local.hour)},
                               {"idsite", "2"},
                               {"m", std::to_string(local.minute)},
                               {"new_visit", "1"},
                               {"r", "7"},
                               {"rec", "1"},
                               {"res", "3024x1964"},
                               {"s", std::to_string(local.second)},
                               {"url", "http://Pallimo"}};
  EXPECT_EQ(parameters, expected);
}

TEST_F(MatomoRequest, EveryCharacterArrives) {
  std::string text = "Größe 電 \U0001F600 ";
  for (char character = 1; character < 0x7f; ++character) text += character;
  app_.bundle.set("CFBundleShortVersionString", text);
  app_.processInformation.setOperatingSystemVersionString(text);
  auto [path, parameters] = sent();
  EXPECT_EQ(parameters["e_n"], text);
  EXPECT_EQ(json::parse(parameters["_cvar"])["2"][1], text);
  EXPECT_EQ(parameters["idsite"], "2");
}

TEST_F(MatomoRequest, TheServerIsAskedAndNoStoreOnTheWay) {
  launch();
  ASSERT_EQ(server_.requests().size(), 1u);
  EXPECT_TRUE(server_.requests().front().contains("\r\nCache-Control: no-cache\r\n"));
}

TEST_F(MatomoRequest, ASecondLaunchSendsTheSameVisitor) {
  const std::string first = sent().second["_id"];
  const std::string second = sent().second["_id"];
  EXPECT_EQ(first, "0123456789ab4def");
  EXPECT_EQ(second, first);
}

TEST_F(MatomoRequest, AServerThatHangsUpIsNotAskedAgain) {
  server_.answerWith(QByteArray());
  launch();
  EXPECT_EQ(server_.requests().size(), 1u);
}

TEST_F(MatomoRequest, TheEndOfTheAppDoesNotWaitForTheAnswer) {
  server_.neverAnswer();
  {
    QtHttpClient client;
    MatomoTracker(app_.services(client), server_.url()).track();
    ASSERT_TRUE(loop_.runUntil([this] { return server_.requests().size() == 1; }));
  }
  EXPECT_TRUE(loop_.runUntil([this] { return server_.closedConnections() == 1; }));
}

}  // namespace
}  // namespace pallimo::adapters::qt
