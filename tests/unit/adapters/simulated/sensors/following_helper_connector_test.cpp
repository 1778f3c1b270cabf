// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/following_helper_connector.h"

#include <gtest/gtest.h>

#include "fakes/fake_helper_connector.h"

namespace pallimo::adapters::simulated {
namespace {

using helper_link::protocol::ClientProtocol;
using Lines = std::vector<std::string>;

constexpr const char* kName = "com.ostrovane.powermetrics";
const base::Bytes kDocument{'d', 'o', 'c'};

/// Writes down the results that it receives.
class NotingClient final : public ClientProtocol {
 public:
  explicit NotingClient(Lines& lines) : lines_(lines) {}

  void powermetricsResult(std::optional<base::Bytes> document) override {
    lines_.push_back(document ? "result " + std::string(document->begin(), document->end())
                              : "result without bytes");
  }

 private:
  Lines& lines_;
};

class FollowingHelperConnectorTest : public ::testing::Test {
 protected:
  std::shared_ptr<ports::HelperConnection> connect() { return connector_.connect(kName, 4096); }
  std::shared_ptr<NotingClient> client() { return std::make_shared<NotingClient>(lines_); }
  /// A connection that exports a client, and its other end.
  std::shared_ptr<fakes::FakeHelperConnection> connectClient() {
    connections_.push_back(connect());
    connections_.back()->setExportedObject(client());
    return inner_.latest();
  }
  /// Every call that reached the inner connections since the last time.
  Lines passedOn() { return inner_.journal().take(); }
  Lines takeLines() { return std::exchange(lines_, {}); }

  Lines lines_;
  fakes::FakeHelperConnector inner_;
  FollowingHelperConnector connector_{
      inner_, [this](std::uint64_t number) { lines_.push_back(std::to_string(number)); }};
  std::vector<std::shared_ptr<ports::HelperConnection>> connections_;
};

TEST_F(FollowingHelperConnectorTest, TellsWhichResultItIsBeforeTheAppReceivesIt) {
  connectClient()->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"1", "result doc"}));
}

TEST_F(FollowingHelperConnectorTest, CountsResultsWithoutBytesToo) {
  const auto helper = connectClient();
  helper->sendResult(kDocument);
  helper->sendResult(std::nullopt);
  helper->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"1", "result doc", "2", "result without bytes", "3", "result doc"}));
}

TEST_F(FollowingHelperConnectorTest, ANewConnectionCountsFromOneAgain) {
  const auto first = connectClient();
  first->sendResult(kDocument);
  first->sendResult(kDocument);
  takeLines();
  connectClient()->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"1", "result doc"}));
}

TEST_F(FollowingHelperConnectorTest, EachConnectionHasACountOfItsOwn) {
  const auto first = connectClient();
  first->sendResult(kDocument);
  const auto second = connectClient();
  second->sendResult(kDocument);
  takeLines();
  first->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"2", "result doc"}));
}

TEST_F(FollowingHelperConnectorTest, TheCountIsTheConnectionsWhoeverItExports) {
  const auto connection = connect();
  connection->setExportedObject(client());
  inner_.latest()->sendResult(kDocument);
  connection->setExportedObject(client());
  inner_.latest()->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"1", "result doc", "2", "result doc"}));
}

TEST_F(FollowingHelperConnectorTest, PassesTheNameAndTheOptionsOn) {
  connector_.connect("other.name", 7);
  EXPECT_EQ(passedOn(), Lines{"connect other.name 7"});
}

TEST_F(FollowingHelperConnectorTest, MakesNoConnectionWhenTheInnerOneMakesNone) {
  inner_.setConnects(false);
  EXPECT_EQ(connect(), nullptr);
}

TEST_F(FollowingHelperConnectorTest, PassesEveryCallOn) {
  const auto connection = connect();
  passedOn();
  connection->setExportedObject(client());
  connection->setInvalidationHandler([] {});
  connection->setInterruptionHandler([] {});
  connection->resume();
  connection->setInvalidationHandler({});
  connection->setInterruptionHandler({});
  connection->invalidate();
  EXPECT_EQ(passedOn(), (Lines{"setExportedObject", "setInvalidationHandler",
                               "setInterruptionHandler", "resume", "clearInvalidationHandler",
                               "clearInterruptionHandler", "invalidate"}));
}

TEST_F(FollowingHelperConnectorTest, HandlersAreCalled) {
  const auto connection = connect();
  connection->setInvalidationHandler([this] { lines_.push_back("invalid"); });
  connection->setInterruptionHandler([this] { lines_.push_back("interrupted"); });
  inner_.latest()->interrupt();
  connection->invalidate();
  EXPECT_EQ(lines_, (Lines{"interrupted", "invalid"}));
}

TEST_F(FollowingHelperConnectorTest, TheHelpersMessagesAreThoseOfTheInnerConnection) {
  const auto connection = connect();
  passedOn();
  const auto proxy = connection->remoteObjectProxy();
  proxy->requestPowermetrics(1000, true);
  proxy->closeHelper();
  EXPECT_EQ(passedOn(), (Lines{"-> requestPowermetrics 1000.000000 GPU", "-> closeHelper"}));
}

TEST_F(FollowingHelperConnectorTest, HasNoMessagesWhenTheInnerConnectionHasNone) {
  inner_.setHasProxies(false);
  EXPECT_EQ(connect()->remoteObjectProxy(), nullptr);
}

TEST_F(FollowingHelperConnectorTest, ExportsNothingWhenTheAppExportsNothing) {
  const auto connection = connect();
  connection->setExportedObject(client());
  connection->setExportedObject(nullptr);
  EXPECT_EQ(inner_.latest()->exportedObject(), nullptr);
}

TEST_F(FollowingHelperConnectorTest, HoldsTheExportedObjectUntilTheConnectionIsInvalidated) {
  const auto connection = connect();
  auto exported = client();
  const std::weak_ptr<NotingClient> watched = exported;
  connection->setExportedObject(std::move(exported));
  EXPECT_FALSE(watched.expired());
  connection->invalidate();
  EXPECT_TRUE(watched.expired());
}

TEST_F(FollowingHelperConnectorTest, HoldsTheInnerConnectionAsLongAsItLives) {
  /// Keeps nothing of what it makes, as a real connector.
  class Forgetful final : public ports::HelperConnector {
   public:
    std::shared_ptr<ports::HelperConnection> connect(std::string_view, unsigned) override {
      auto made = std::make_shared<fakes::FakeHelperConnection>(
          std::make_shared<fakes::Journal>(), fakes::FakeHelperConnection::Behaviour{});
      latest = made;
      return made;
    }
    std::weak_ptr<fakes::FakeHelperConnection> latest;
  } forgetful;
  FollowingHelperConnector connector(forgetful, [](std::uint64_t) {});
  auto connection = connector.connect(kName, 4096);
  EXPECT_FALSE(forgetful.latest.expired());
  connection.reset();
  EXPECT_TRUE(forgetful.latest.expired());
}

TEST_F(FollowingHelperConnectorTest, AConnectionMayOutliveItsConnector) {
  auto connector = std::make_unique<FollowingHelperConnector>(
      inner_, [this](std::uint64_t number) { lines_.push_back(std::to_string(number)); });
  const auto connection = connector->connect(kName, 4096);
  connection->setExportedObject(client());
  connector.reset();
  inner_.latest()->sendResult(kDocument);
  EXPECT_EQ(lines_, (Lines{"1", "result doc"}));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
