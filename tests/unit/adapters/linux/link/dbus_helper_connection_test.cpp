// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>

#include "adapters/linux/link/dbus_helper_connection.h"
#include "unit/adapters/linux/link/link_fixture.h"
#include "unit/adapters/linux/link/link_peers.h"

namespace pallimo::adapters::linux {
namespace {

using namespace link_test;
using Events = std::vector<std::string>;
namespace protocol = helper_link::protocol;

TEST(DBusHelperConnection, CallsAreAnswered) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askIsResponding();
  app.askVersion();
  app.proxy()->requestPowermetrics(3, false);
  ASSERT_TRUE(app.log->waitForSize(3));
  EXPECT_EQ(app.log->all(), Events({"yes", "1.2.3", "document 3"}));
}

TEST(DBusHelperConnection, OneWayMessagesArrive) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.proxy()->unInstallHelper();
  app.proxy()->closeHelper();
  EXPECT_TRUE(helper.log->waitFor("closeHelper"));
  EXPECT_EQ(helper.log->all(), Events({"accept", "unInstallHelper", "closeHelper"}));
}

TEST(DBusHelperConnection, AnAbsentAndAnEmptyDocumentDiffer) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.proxy()->requestPowermetrics(-1, false);
  app.proxy()->requestPowermetrics(0, false);
  ASSERT_TRUE(app.log->waitForSize(2));
  EXPECT_EQ(app.log->all(), Events({"absent", "document 0"}));
}

TEST(DBusHelperConnection, LongDocumentsArriveIntact) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.proxy()->requestPowermetrics(600'000, false);
  app.proxy()->requestPowermetrics(16 << 20, false);
  ASSERT_TRUE(app.log->waitForSize(2));
  EXPECT_EQ(app.log->all(), Events({"document 600000", "document 16777216"}));
}

TEST(DBusHelperConnection, TwoThousandResultsAndRepliesArriveInOrder) {
  constexpr int kRequests = 2000;
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  Events expected;
  app.connect();
  for (int request = 0; request < kRequests; ++request) {
    const int size = request % 100 == 0 ? 600'000 : request;
    app.proxy()->requestPowermetrics(size, false);
    expected.push_back("document " + std::to_string(size));
    if (request % 10 != 0) continue;
    app.askVersion();
    expected.push_back("1.2.3");
  }
  ASSERT_TRUE(app.log->waitForSize(expected.size()));
  EXPECT_EQ(app.log->all(), expected);
}

TEST(DBusHelperConnection, FiveConnectionsAtOnceAreServed) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  std::vector<std::shared_ptr<ports::HelperConnection>> connections;
  for (int index = 0; index < 5; ++index) {
    connections.push_back(app.makeConnection());
    connections.back()->resume();
    connections.back()->remoteObjectProxy()->requestPowermetrics(600'000, false);
  }
  EXPECT_TRUE(app.log->waitFor("document 600000", 5));
  EXPECT_EQ(helper.log->count("accept"), 5u);
}

TEST(DBusHelperConnection, NothingIsSentBeforeResume) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  {
    TestApp app(folder.state());
    const auto suspended = app.makeConnection();
    suspended->remoteObjectProxy()->closeHelper();
  }
  helper.stop();
  EXPECT_EQ(helper.log->all(), Events());
}

TEST(DBusHelperConnection, WhatIsSentBeforeTheConnectionStandsIsKeptInOrder) {
  TemporaryFolder folder;
  std::unique_ptr<TestHelper> helper;
  TestApp app(folder.state(), [&] {
    helper = std::make_unique<TestHelper>(folder.state());
    return HelperStart::kStarted;
  });
  app.connection = app.makeConnection();
  app.proxy()->requestPowermetrics(1, false);
  app.connection->resume();
  app.proxy()->requestPowermetrics(2, false);
  app.askVersion();
  ASSERT_TRUE(app.log->waitForSize(3));
  EXPECT_EQ(app.log->all(), Events({"document 1", "document 2", "1.2.3"}));
  app.endConnector();
}

TEST(DBusHelperConnection, WithoutAHelperItIsInvalidatedAtOnce) {
  TemporaryFolder folder;
  int launches = 0;
  TestApp app(folder.state(), [&] {
    ++launches;
    return HelperStart::kNotInstalled;
  });
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("invalidated"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"invalidated"}));
  EXPECT_EQ(launches, 1);
}

TEST(DBusHelperConnection, AStaleSocketIsNobodyServing) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  helper.kill();
  ASSERT_TRUE(std::filesystem::exists(folder.state().helperSocket()));
  TestApp app(folder.state());
  app.connect();
  ASSERT_TRUE(app.log->waitFor("invalidated"));
  EXPECT_EQ(app.log->all(), Events({"invalidated"}));
}

TEST(DBusHelperConnection, AHelperThatCanNotBeStartedInvalidates) {
  TemporaryFolder folder;
  TestApp app(folder.state(), [] { return HelperStart::kFailed; });
  app.connect();
  EXPECT_TRUE(app.log->waitFor("invalidated"));
}

TEST(DBusHelperConnection, AHelperThatNeverServesInvalidatesAfterTheLimit) {
  TemporaryFolder folder;
  int launches = 0;
  DBusLinkLimits limits;
  limits.opening = 50ms;
  TestApp app(
      folder.state(),
      [&] {
        ++launches;
        return HelperStart::kStarted;
      },
      limits);
  app.connect();
  EXPECT_TRUE(app.log->waitFor("invalidated"));
  app.endConnector();
  EXPECT_GT(launches, 1);
  EXPECT_LT(launches, 8) << "every pause is twice as long as the one before";
}

TEST(DBusHelperConnection, AnotherNameIsServedByNobody) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connection = app.makeConnection("com.example.other");
  app.connection->resume();
  EXPECT_TRUE(app.log->waitFor("invalidated"));
}

TEST(DBusHelperConnection, OutsideThePrivilegedDomainNobodyServes) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connection = app.connector->connect(protocol::kMachServiceName, 0);
  app.connection->setInvalidationHandler([&] { app.log->add("invalidated"); });
  app.connection->resume();
  EXPECT_TRUE(app.log->waitFor("invalidated"));
}

TEST(DBusHelperConnection, APathBeyondASocketAddressInvalidates) {
  TemporaryFolder folder;
  const StateFolder deep(folder.path() + "/" + std::string(100, 'd'));
  std::filesystem::create_directory(deep.path());
  TestApp app(deep, [] { return HelperStart::kStarted; });
  app.connect();
  EXPECT_TRUE(app.log->waitFor("invalidated"));
}

TEST(DBusHelperConnection, AFolderWithSpecialCharactersServes) {
  TemporaryFolder folder;
  const StateFolder special(folder.path() + "/a b,c;d=%20 \xc3\xa9\xe2\x82\xac");
  std::filesystem::create_directory(special.path());
  TestHelper helper(special);
  ASSERT_TRUE(helper.hasStarted());
  EXPECT_TRUE(std::filesystem::is_socket(special.helperSocket()));
  TestApp app(special);
  app.connect();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3"));
}

TEST(DBusHelperConnection, AHelperThatIsKilledInterruptsOnce) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  ASSERT_TRUE(helper.hasStarted());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("interrupted"));
  app.askVersion();
  app.proxy()->requestPowermetrics(1, false);
  app.connection->invalidate();
  ASSERT_TRUE(app.log->waitFor("invalidated"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"1.2.3", "interrupted", "invalidated"}));
}

TEST(DBusHelperConnection, PendingRepliesAreNeverCalledAfterAnInterruption) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.pause();
  app.askIsResponding();
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("interrupted"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"1.2.3", "interrupted"}));
}

TEST(DBusHelperConnection, AClearedInterruptionHandlerIsNotCalled) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  const auto other = app.makeConnection();
  other->resume();
  other->remoteObjectProxy()->getVersion([&](const std::string&) { app.log->add("other stands"); });
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("other stands"));
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  app.connection->setInterruptionHandler(nullptr);
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("interrupted"));
  app.endConnector();
  EXPECT_EQ(app.log->count("interrupted"), 1u);
}

TEST(DBusHelperConnection, AfterAnInterruptionTheNextConnectionReachesTheNextHelper) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  std::unique_ptr<TestHelper> next;
  TestApp app(folder.state(), [&] {
    next = std::make_unique<TestHelper>(folder.state());
    return HelperStart::kStarted;
  });
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("interrupted"));
  app.connect();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3", 2));
  app.endConnector();
}

TEST(DBusHelperConnection, AStoppedHelperIsWaitedForInSilence) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.pause();
  app.proxy()->requestPowermetrics(1, false);
  app.proxy()->requestPowermetrics(2, false);
  const auto second = app.makeConnection();
  second->resume();
  second->remoteObjectProxy()->requestPowermetrics(3, false);
  helper.resume();
  ASSERT_TRUE(app.log->waitFor("document 2"));
  ASSERT_TRUE(app.log->waitFor("document 3"));
  EXPECT_EQ(app.log->all().size(), 4u);
  EXPECT_EQ(app.log->count("interrupted"), 0u);
  EXPECT_EQ(app.log->count("invalidated"), 0u);
}

TEST(DBusHelperConnection, AHelperThatDiesBeforeItLetsUsInIsReplaced) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  std::unique_ptr<TestHelper> next;
  TestApp app(folder.state(), [&] {
    next = std::make_unique<TestHelper>(folder.state());
    return HelperStart::kStarted;
  });
  helper.pause();
  app.connect();
  app.askVersion();
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"1.2.3"}));
}

TEST(DBusHelperConnection, AHelperWithoutRoomIsTriedAgain) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.peers = 1;
  TestHelper helper(folder.state(), limits);
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  const auto second = app.makeConnection();
  second->resume();
  second->remoteObjectProxy()->requestPowermetrics(1, false);
  app.connection.reset();
  EXPECT_TRUE(app.log->waitFor("document 1"));
  EXPECT_EQ(app.log->count("interrupted"), 0u);
}

}  // namespace
}  // namespace pallimo::adapters::linux
