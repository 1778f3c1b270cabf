// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_http_client.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <chrono>
#include <future>
#include <memory>

#include "unit/adapters/qt/event_loop.h"
#include "unit/adapters/qt/local_http_server.h"
#include "unit/adapters/qt/test_certificate.h"

namespace pallimo::adapters::qt {
namespace {

using ports::HttpCachePolicy;
using ports::HttpRequest;

/// A look-up that takes as long as the test wants and then finds no address.
class SlowLookUp {
 public:
  /// Waits until the thread that looks up is back, so that nothing of the test is left behind.
  ~SlowLookUp() {
    if (!isAnswered_) answer();
    back_.get_future().wait();
  }

  QtHttpClient::NameLookUp function() {
    return [this](const std::string& name) {
      name_.set_value(name);
      answer_.get_future().wait();
      back_.set_value();
      return false;
    };
  }
  /// The name that is being looked up; waits for it.
  std::string name() {
    auto name = name_.get_future();
    return name.wait_for(std::chrono::seconds(20)) == std::future_status::ready ? name.get() : "";
  }
  void answer() {
    isAnswered_ = true;
    answer_.set_value();
  }

 private:
  bool isAnswered_ = false;
  std::promise<std::string> name_;
  std::promise<void> answer_;
  std::promise<void> back_;
};

/// Longer than any test may take, so that nothing ends because of it.
constexpr double kForEver = 3600;

class QtHttpClientTest : public testing::Test {
 protected:
  QtHttpClientTest() { withoutProxies(); }
  ~QtHttpClientTest() override { withoutProxies(); }

  static void withoutProxies() {
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY",
                             "HTTPS_PROXY", "ALL_PROXY", "NO_PROXY"}) {
      qunsetenv(name);
    }
  }

  void send(const std::string& url) { client_->send({.url = url, .timeout = kForEver}); }

  bool runUntil(const std::function<bool()>& isDone) {
    // The client's own end has no event.
    QTimer ticks;
    ticks.start(1);
    return loop_.runUntil(isDone);
  }
  bool runUntilRequests(std::size_t count) {
    return runUntil([&] { return server_.requests().size() >= count; });
  }
  bool runUntilIdle() {
    return runUntil([&] { return client_->underWay() == 0; });
  }

  /// The one request that the server has got; empty when that is not one.
  QByteArray theRequest() const {
    return server_.requests().size() == 1 ? server_.requests().front() : QByteArray();
  }

  EventLoop loop_;
  LocalHttpServer server_;
  std::unique_ptr<QtHttpClient> client_ = std::make_unique<QtHttpClient>();
};

// Sending.

TEST_F(QtHttpClientTest, ARequestReachesItsServer) {
  send(server_.url() + "some/page?a=b");
  ASSERT_TRUE(runUntilRequests(1));
  EXPECT_TRUE(theRequest().startsWith("GET /some/page?a=b HTTP/1.1\r\n"));
}

TEST_F(QtHttpClientTest, ARequestIsTheWholeConversation) {
  send(server_.url() + "%41?a=%c3%A4");
  ASSERT_TRUE(runUntilIdle());
  EXPECT_EQ(theRequest().toStdString(),
            "GET /%41?a=%c3%A4 HTTP/1.1\r\nHost: " + server_.authority() +
                "\r\nUser-Agent: Pallimo\r\nAccept: */*\r\nConnection: close\r\n\r\n");
}

TEST_F(QtHttpClientTest, ThePolicyOfARequestReachesTheServer) {
  client_->send({.url = server_.url(),
                 .cachePolicy = HttpCachePolicy::reloadIgnoringLocalCacheData,
                 .timeout = kForEver});
  ASSERT_TRUE(runUntilRequests(1));
  EXPECT_TRUE(theRequest().contains("\r\nCache-Control: no-cache\r\n"));
}

TEST_F(QtHttpClientTest, SendingReturnsBeforeTheServerHasAnswered) {
  server_.neverAnswer();
  send(server_.url());
  EXPECT_EQ(client_->underWay(), 1u);
  EXPECT_TRUE(server_.requests().empty());
}

TEST_F(QtHttpClientTest, AnAnsweredRequestLeavesNothingUnderWay) {
  send(server_.url());
  EXPECT_TRUE(runUntilIdle());
  EXPECT_EQ(server_.requests().size(), 1u);
}

TEST_F(QtHttpClientTest, RequestsDoNotWaitForOneAnother) {
  server_.answerWith([](const QByteArray& request) -> std::optional<QByteArray> {
    if (request.startsWith("GET /slow")) return std::nullopt;
    return "HTTP/1.1 204 No Content\r\n\r\n";
  });
  send(server_.url() + "slow");
  ASSERT_TRUE(runUntilRequests(1));
  send(server_.url() + "1");
  send(server_.url() + "2");
  EXPECT_TRUE(runUntil([&] { return client_->underWay() == 1; }));
  EXPECT_EQ(server_.requests().size(), 3u);
}

TEST_F(QtHttpClientTest, CookiesAreNotKept) {
  server_.answerWith("HTTP/1.1 204 No Content\r\nSet-Cookie: a=b\r\n\r\n");
  send(server_.url());
  ASSERT_TRUE(runUntilIdle());
  send(server_.url());
  ASSERT_TRUE(runUntilIdle());
  ASSERT_EQ(server_.requests().size(), 2u);
  EXPECT_FALSE(server_.requests().back().contains("a=b"));
}

TEST_F(QtHttpClientTest, WhatIsNoURLIsNotSent) {
  send("piwik.php");
  EXPECT_EQ(client_->underWay(), 0u);
}

// Answers that are none.

TEST_F(QtHttpClientTest, ARefusedConnectionIsDropped) {
  send("http://127.0.0.1:1/");
  EXPECT_TRUE(runUntilIdle());
}

TEST_F(QtHttpClientTest, ErrorsOfTheServerAreDropped) {
  for (const char* status : {"400 Bad Request", "404 Not Found", "500 Internal Server Error",
                             "503 Service Unavailable", "401 Unauthorized"}) {
    server_.answerWith(QByteArray("HTTP/1.1 ") + status + "\r\nContent-Length: 0\r\n\r\n");
    const std::size_t before = server_.requests().size();
    send(server_.url());
    EXPECT_TRUE(runUntilIdle()) << status;
    EXPECT_EQ(server_.requests().size(), before + 1) << status;
  }
}

TEST_F(QtHttpClientTest, GarbageIsDropped) {
  server_.answerWith(QByteArray(5000, '\xff'));
  send(server_.url());
  EXPECT_TRUE(runUntilIdle());
  EXPECT_EQ(server_.requests().size(), 1u);
}

TEST_F(QtHttpClientTest, AnAnswerThatStopsHalfwayIsDropped) {
  server_.answerWith("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
  send(server_.url());
  EXPECT_TRUE(runUntilIdle());
  EXPECT_EQ(server_.requests().size(), 1u);
}

TEST_F(QtHttpClientTest, AClosedConnectionIsNoReasonToAskAgain) {
  server_.answerWith(QByteArray());
  send(server_.url());
  EXPECT_TRUE(runUntilIdle());
  EXPECT_EQ(server_.requests().size(), 1u);
}

TEST_F(QtHttpClientTest, AnAnswerWithoutEndIsGivenUp) {
  // Behind it the connection stays open: only the client can end it.
  QTcpServer endless;
  endless.listen(QHostAddress::LocalHost);
  QObject::connect(&endless, &QTcpServer::newConnection, &endless, [&] {
    QTcpSocket* socket = endless.nextPendingConnection();
    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000000\r\n\r\n");
    socket->write(QByteArray(200 * 1024, 'x'));
  });
  send("http://127.0.0.1:" + std::to_string(endless.serverPort()) + "/");
  EXPECT_TRUE(runUntilIdle());
}

TEST_F(QtHttpClientTest, ARedirectionIsAnAnswerLikeAnyOther) {
  LocalHttpServer other;
  for (const std::string& location : {server_.url() + "new", other.url()}) {
    server_.answerWith("HTTP/1.1 302 Found\r\nLocation: " + QByteArray::fromStdString(location) +
                       "\r\nContent-Length: 0\r\n\r\n");
    send(server_.url() + "old");
    EXPECT_TRUE(runUntilIdle());
  }
  EXPECT_EQ(server_.requests().size(), 2u);
  EXPECT_TRUE(other.requests().empty());
}

TEST_F(QtHttpClientTest, AServerThatDoesNotAnswerInTimeIsGivenUp) {
  server_.neverAnswer();
  client_->send({.url = server_.url(), .timeout = 0.02});
  EXPECT_TRUE(runUntilIdle());
  EXPECT_TRUE(runUntil([&] { return server_.closedConnections() == 1; }));
}

// Encryption.

/// A server that proves its address to those who trust the test's own certificate.
class EncryptedQtHttpClientTest : public QtHttpClientTest {
 protected:
  EncryptedQtHttpClientTest() {
    auto server = std::make_unique<QSslServer>();
    QSslConfiguration configuration = server->sslConfiguration();
    configuration.setLocalCertificate(certificate_);
    configuration.setPrivateKey(QSslKey(QByteArray(kTestKey), QSsl::Ec));
    server->setSslConfiguration(configuration);
    encrypted_ = std::make_unique<LocalHttpServer>(std::move(server), "https");
  }
  ~EncryptedQtHttpClientTest() override { QSslConfiguration::setDefaultConfiguration(usual_); }

  void trustTheServer() {
    QSslConfiguration trusting = usual_;
    trusting.setCaCertificates({certificate_});
    QSslConfiguration::setDefaultConfiguration(trusting);
  }

  const QSslCertificate certificate_{QByteArray(kTestCertificate)};
  const QSslConfiguration usual_ = QSslConfiguration::defaultConfiguration();
  std::unique_ptr<LocalHttpServer> encrypted_;
};

TEST_F(EncryptedQtHttpClientTest, AServerThatProvesItsNameGetsTheRequest) {
  trustTheServer();
  send(encrypted_->url() + "piwik.php?a=b");
  ASSERT_TRUE(runUntilIdle());
  ASSERT_EQ(encrypted_->requests().size(), 1u);
  EXPECT_TRUE(encrypted_->requests().front().startsWith("GET /piwik.php?a=b HTTP/1.1\r\n"));
}

TEST_F(EncryptedQtHttpClientTest, AServerThatNobodyVouchesForGetsNothing) {
  send(encrypted_->url());
  ASSERT_TRUE(runUntilIdle());
  EXPECT_TRUE(encrypted_->requests().empty());
}

TEST_F(EncryptedQtHttpClientTest, AServerOfAnotherNameGetsNothing) {
  trustTheServer();
  const std::string port = encrypted_->authority().substr(encrypted_->authority().find(':'));
  send("https://localhost" + port + "/");
  ASSERT_TRUE(runUntilIdle());
  EXPECT_TRUE(encrypted_->requests().empty());
}

TEST_F(QtHttpClientTest, WhatIsToBeEncryptedIsNotSentInTheClear) {
  QTcpServer plain;
  plain.listen(QHostAddress::LocalHost);
  QByteArray first;
  QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&] {
    QTcpSocket* socket = plain.nextPendingConnection();
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [&first, socket] {
      first += socket->readAll();
      socket->disconnectFromHost();
    });
  });
  send("https://127.0.0.1:" + std::to_string(plain.serverPort()) + "/");
  ASSERT_TRUE(runUntilIdle());
  EXPECT_TRUE(first.startsWith("\x16\x03")) << first.toHex().toStdString();  // a TLS handshake
  EXPECT_FALSE(first.contains("GET"));
}

// Proxies.

TEST_F(QtHttpClientTest, TheUsersProxyIsAskedInTheServersPlace) {
  qputenv("http_proxy", QByteArray::fromStdString(server_.url()));
  send("http://analytics.invalid/piwik.php?a=b");
  ASSERT_TRUE(runUntilRequests(1));
  EXPECT_TRUE(theRequest().startsWith("CONNECT analytics.invalid:80 HTTP/1.1\r\n"))
      << theRequest().toStdString();
}

// The end.

TEST_F(QtHttpClientTest, ItsEndGivesUpAnAnswerThatNeverComes) {
  server_.neverAnswer();
  send(server_.url());
  ASSERT_TRUE(runUntilRequests(1));
  client_.reset();
  EXPECT_TRUE(runUntil([&] { return server_.closedConnections() == 1; }));
}

TEST_F(QtHttpClientTest, ItsEndComesRightAfterSending) {
  server_.neverAnswer();
  send(server_.url());
  client_.reset();
}

TEST_F(QtHttpClientTest, ItsEndGivesUpEveryRequest) {
  server_.neverAnswer();
  send(server_.url() + "1");
  send(server_.url() + "2");
  ASSERT_TRUE(runUntilRequests(2));
  client_.reset();
  EXPECT_TRUE(runUntil([&] { return server_.closedConnections() == 2; }));
}

TEST(QtHttpClientEnd, NeitherItsEndNorTheProgramsWaitsForAName) {
  SlowLookUp slow;
  {
    const EventLoop program;
    QtHttpClient client(slow.function());
    client.send({.url = "http://slow.example/", .timeout = kForEver});
    ASSERT_EQ(slow.name(), "slow.example");
  }
  // Both are gone, and nobody has answered.
}

TEST_F(QtHttpClientTest, ANameWithoutAnAddressIsDropped) {
  SlowLookUp slow;
  client_ = std::make_unique<QtHttpClient>(slow.function());
  send("http://slow.example/");
  ASSERT_EQ(slow.name(), "slow.example");
  EXPECT_EQ(client_->underWay(), 1u);
  slow.answer();
  EXPECT_TRUE(runUntilIdle());
}

}  // namespace
}  // namespace pallimo::adapters::qt
