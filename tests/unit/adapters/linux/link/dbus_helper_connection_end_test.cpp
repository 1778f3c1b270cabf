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

std::size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

TEST(DBusHelperConnectionEnd, AfterInvalidateOnlyTheInvalidationIsDelivered) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  std::promise<void> gate;
  app.delivery.post([opened = gate.get_future().share()] { opened.wait(); });
  app.connect();
  app.askVersion();
  app.proxy()->requestPowermetrics(1, false);
  ASSERT_TRUE(helper.log->waitFor("request"));
  app.connection->invalidate();
  gate.set_value();
  ASSERT_TRUE(app.log->waitFor("invalidated"));
  ASSERT_TRUE(helper.log->waitFor("disconnected"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"invalidated"}));
}

TEST(DBusHelperConnectionEnd, AClearedInvalidationHandlerIsNotCalled) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  auto app = std::make_unique<TestApp>(folder.state());
  const auto log = app->log;
  app->connect();
  app->askVersion();
  ASSERT_TRUE(log->waitFor("1.2.3"));
  app->connection->setInvalidationHandler(nullptr);
  app->connection->setInterruptionHandler(nullptr);
  app->connection->invalidate();
  app.reset();
  EXPECT_EQ(log->all(), Events({"1.2.3"}));
}

TEST(DBusHelperConnectionEnd, InvalidatingTwiceIsToldOnce) {
  TemporaryFolder folder;
  auto app = std::make_unique<TestApp>(folder.state());
  const auto log = app->log;
  app->connect();
  ASSERT_TRUE(log->waitFor("invalidated"));
  app->connection->invalidate();
  app->connection->invalidate();
  app.reset();
  EXPECT_EQ(log->all(), Events({"invalidated"}));
}

TEST(DBusHelperConnectionEnd, AnEndedConnectionIsNotInterrupted) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.pause();
  app.connection->invalidate();
  helper.kill();
  ASSERT_TRUE(app.log->waitFor("invalidated"));
  app.endConnector();
  EXPECT_EQ(app.log->all(), Events({"1.2.3", "invalidated"}));
}

TEST(DBusHelperConnectionEnd, DroppingAConnectionCallsNothing) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  auto app = std::make_unique<TestApp>(folder.state());
  const auto log = app->log;
  app->connect();
  app->askVersion();
  ASSERT_TRUE(log->waitFor("1.2.3"));
  app->connection.reset();
  ASSERT_TRUE(helper.log->waitFor("disconnected"));
  app.reset();
  EXPECT_EQ(log->all(), Events({"1.2.3"}));
}

TEST(DBusHelperConnectionEnd, TheExportedObjectIsHeldUntilInvalidate) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  auto object = std::make_shared<LoggingClient>(app.log);
  const std::weak_ptr<LoggingClient> weak = object;
  app.connect();
  app.connection->setExportedObject(std::move(object));
  EXPECT_FALSE(weak.expired());
  app.connection->invalidate();
  EXPECT_TRUE(weak.expired());
}

TEST(DBusHelperConnectionEnd, AProxyMayOutliveItsConnection) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  const auto proxy = app.proxy();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  app.connection.reset();
  proxy->closeHelper();
  proxy->isResponding([&](bool) { app.log->add("yes"); });
  app.endConnector();
  proxy->requestPowermetrics(1, true);
  ASSERT_TRUE(helper.log->waitFor("disconnected"));
  EXPECT_EQ(helper.log->all(), Events({"accept", "disconnected"}));
}

TEST(DBusHelperConnectionEnd, AConnectionMayOutliveItsConnector) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  app.connector.reset();
  app.askVersion();
  app.connection->invalidate();
  app.connection.reset();
  EXPECT_EQ(app.log->all(), Events({"1.2.3"}));
}

TEST(DBusHelperConnectionEnd, AConnectionMayBeDroppedByItsOwnHandlersAndReplies) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.proxy()->getVersion([&](const std::string&) {
    app.connection.reset();
    app.log->add("dropped");
  });
  ASSERT_TRUE(app.log->waitFor("dropped"));
  EXPECT_TRUE(helper.log->waitFor("disconnected"));
  app.connect();
  app.connection->setInterruptionHandler([&] {
    app.connection->invalidate();
    app.connection.reset();
    app.log->add("dropped");
  });
  app.proxy()->requestPowermetrics(0, true);
  EXPECT_TRUE(app.log->waitFor("dropped", 2));
}

TEST(DBusHelperConnectionEnd, WhatWasSentBeforeInvalidateStillArrives) {
  constexpr std::size_t kRequests = 500;
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  for (std::size_t request = 0; request < kRequests; ++request) {
    app.proxy()->requestPowermetrics(2000, false);
  }
  app.proxy()->closeHelper();
  app.connection->invalidate();
  ASSERT_TRUE(helper.log->waitFor("disconnected"));
  EXPECT_EQ(helper.log->count("request"), kRequests);
  EXPECT_EQ(helper.log->count("closeHelper"), 1u);
}

TEST(DBusHelperConnectionEnd, TheLastMessageArrivesAlsoWhileALongDocumentIsOnItsWay) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  for (std::size_t round = 1; round <= 20; ++round) {
    app.connect();
    app.proxy()->requestPowermetrics(4 << 20, false);
    ASSERT_TRUE(helper.log->waitFor("request", round));
    app.proxy()->closeHelper();
    app.connection.reset();
    ASSERT_TRUE(helper.log->waitFor("closeHelper", round));
  }
}

TEST(DBusHelperConnectionEnd, TheLastMessageOfTheProgramStillArrives) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  {
    TestApp app(folder.state());
    app.connect();
    app.proxy()->closeHelper();
  }
  EXPECT_TRUE(helper.log->waitFor("closeHelper"));
}

TEST(DBusHelperConnectionEnd, TheEndOfTheProgramWaitsForAStoppedHelperOnlyAsLongAsTheLimit) {
  TemporaryFolder folder;
  HelperProcess helper(folder.state());
  DBusLinkLimits limits;
  limits.flush = 50ms;
  TestApp app(folder.state(), notInstalled, limits);
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.pause();
  app.proxy()->closeHelper();
  const auto before = std::chrono::steady_clock::now();
  app.endConnector();
  EXPECT_LT(std::chrono::steady_clock::now() - before, kDeadline / 2);
}

TEST(DBusHelperConnectionEnd, TheEndOfTheProgramIsNotHeldUpByAHelperWhoseQueueIsFull) {
  TemporaryFolder folder;
  auto stopped = std::make_unique<RawListener>(folder.state());
  std::vector<RawSocket> queue;
  do {
    queue.emplace_back(folder.state().helperSocket().c_str(), SOCK_NONBLOCK);
  } while (queue.back().isConnected());
  DBusLinkLimits limits;
  limits.flush = 50ms;
  std::promise<void> isLookingForAHelper;
  TestApp app(
      folder.state(),
      [&] {
        isLookingForAHelper.set_value();
        return HelperStart::kNotInstalled;
      },
      limits);
  app.connect();
  app.endConnector();
  // The thread was left in its connect; now that the helper is gone it ends.
  stopped.reset();
  ASSERT_EQ(isLookingForAHelper.get_future().wait_for(kDeadline), std::future_status::ready);
  EXPECT_EQ(app.log->all(), Events());
}

TEST(DBusHelperConnectionEnd, MessagesBeyondTheLimitOfThoseThatWaitAreDropped) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  DBusLinkLimits limits;
  limits.waitingMessages = 10;
  TestApp app(folder.state(), notInstalled, limits);
  app.connection = app.makeConnection();
  for (int request = 0; request < 20; ++request) app.proxy()->requestPowermetrics(1, false);
  app.connection->resume();
  ASSERT_TRUE(app.log->waitFor("document 1", 10));
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  EXPECT_EQ(app.log->count("document 1"), 10u);
}

TEST(DBusHelperConnectionEnd, AThousandReconnectsLeakNoDescriptorAndNoThread) {
  constexpr std::size_t kRounds = 1000;
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  const auto descriptorsBefore = entriesOf("/proc/self/fd");
  TestApp app(folder.state());
  const auto threadsBefore = entriesOf("/proc/self/task");
  for (std::size_t round = 1; round <= kRounds; ++round) {
    app.connect();
    app.proxy()->requestPowermetrics(1, false);
    ASSERT_TRUE(app.log->waitFor("document 1", round));
  }
  EXPECT_LE(entriesOf("/proc/self/task"), threadsBefore);
  app.endConnector();
  ASSERT_TRUE(helper.log->waitFor("disconnected", kRounds));
  EXPECT_LE(entriesOf("/proc/self/fd"), descriptorsBefore);
}

TEST(DBusHelperConnectionEnd, TheProgramsHandlingOfBrokenPipesIsLeftAlone) {
  struct sigaction before = {};
  sigaction(SIGPIPE, nullptr, &before);
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  struct sigaction after = {};
  sigaction(SIGPIPE, nullptr, &after);
  EXPECT_EQ(before.sa_handler, after.sa_handler);
}

}  // namespace
}  // namespace pallimo::adapters::linux
