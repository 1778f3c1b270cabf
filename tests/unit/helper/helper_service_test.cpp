// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/helper_service.h"

#include "unit/helper/helper_service_fixture.h"

namespace pallimo::helper {
namespace {

using namespace std::chrono_literals;

TEST_F(HelperServiceTest, Listens) { EXPECT_TRUE(listener.isListening); }

TEST_F(HelperServiceTest, DoesNotServeBesideAnotherHelper) {
  fakes::FakeHelperListener taken;
  taken.canStart = false;
  const auto second = std::make_shared<HelperService>(
      HelperService::Services{mainQueue, taken, files, runs}, HelperService::Settings{}, [] {});
  EXPECT_FALSE(second->start());
}

// Without clients.

TEST_F(HelperServiceTest, EndsFiveSecondsAfterTheStartIfNobodyComes) {
  pass(4999ms);
  EXPECT_EQ(exits, 0);
  EXPECT_TRUE(listener.isListening);
  pass(1ms);
  EXPECT_FALSE(listener.isListening);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, EndsFiveSecondsAfterItsLastClientHasGone) {
  const auto client = listener.connect();
  pass(1min);
  listener.disconnect(client);
  pass(4999ms);
  EXPECT_EQ(exits, 0);
  pass(1ms);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, StaysWhileAClientIsThere) {
  const auto first = listener.connect();
  const auto second = listener.connect();
  listener.disconnect(first);
  pass(1h);
  EXPECT_EQ(exits, 0);
  EXPECT_TRUE(listener.isListening);
}

TEST_F(HelperServiceTest, StaysWhenAClientComesWithinFiveSeconds) {
  listener.disconnect(listener.connect());
  pass(4999ms);
  listener.connect();
  pass(1h);
  EXPECT_EQ(exits, 0);
}

TEST_F(HelperServiceTest, CountsTheFiveSecondsAnewForEachLastClient) {
  listener.disconnect(listener.connect());
  pass(3s);
  listener.disconnect(listener.connect());
  pass(4999ms);
  EXPECT_EQ(exits, 0);
  pass(1ms);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, HasNoTimerWhileAClientIsThere) {
  listener.connect();
  EXPECT_EQ(mainQueue.liveTimers(), 0U);
}

TEST_F(HelperServiceTest, HasNoTimerOnceItHasEnded) {
  pass(5s);
  EXPECT_EQ(mainQueue.liveTimers(), 0U);
  pass(1h);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, StopsListeningBeforeItEnds) {
  listener.whenStopped = [this] { EXPECT_EQ(exits, 0); };
  pass(5s);
  EXPECT_EQ(listener.stops, 1);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, ServesAClientThatReachedItBeforeItStoppedListening) {
  fakes::FakeHelperClient late;
  listener.whenStopped = [&] { late = listener.connect(); };
  pass(5s);
  EXPECT_EQ(exits, 0);
  request(late);
  children.print(0, "document");
  EXPECT_EQ(late.results(), Results{"document"});
}

TEST_F(HelperServiceTest, EndsAtOnceWhenThatClientGoes) {
  fakes::FakeHelperClient late;
  listener.whenStopped = [&] { late = listener.connect(); };
  pass(5s);
  pass(1h);
  listener.disconnect(late);
  EXPECT_EQ(exits, 1);
}

// closeHelper.

TEST_F(HelperServiceTest, StopsListeningWhenToldToClose) {
  const auto client = listener.connect();
  client.helper->closeHelper();
  EXPECT_FALSE(listener.isListening);
}

TEST_F(HelperServiceTest, ClosesTheConnectionOfTheClientThatToldItToClose) {
  const auto client = listener.connect();
  listener.whenStopped = [&client] { EXPECT_FALSE(client.peer->isClosed); };
  client.helper->closeHelper();
  EXPECT_TRUE(client.peer->isClosed);
}

TEST_F(HelperServiceTest, EndsTheRunsOfTheClientThatToldItToCloseAtOnce) {
  const auto client = listener.connect();
  request(client);
  client.helper->closeHelper();
  EXPECT_EQ(children.running(), 0U);
}

TEST_F(HelperServiceTest, EndsWithoutTheFiveSecondsWhenToldToClose) {
  const auto client = listener.connect();
  client.helper->closeHelper();
  // What was sent to the client is on its way until it is reported gone.
  EXPECT_EQ(exits, 0);
  listener.disconnect(client);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, ServesOthersUntilTheyGoWhenToldToClose) {
  const auto client = listener.connect();
  const auto other = listener.connect();
  client.helper->closeHelper();
  listener.disconnect(client);
  EXPECT_FALSE(other.peer->isClosed);
  request(other);
  children.print(0, "document");
  EXPECT_EQ(other.results(), Results{"document"});
  pass(1h);
  EXPECT_EQ(exits, 0);
  listener.disconnect(other);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, ServesAClientThatReachedItBeforeItWasToldToClose) {
  const auto client = listener.connect();
  fakes::FakeHelperClient late;
  listener.whenStopped = [&] { late = listener.connect(); };
  client.helper->closeHelper();
  listener.disconnect(client);
  EXPECT_EQ(exits, 0);
  listener.disconnect(late);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, StopsListeningOnceWhenTwoTellItToClose) {
  const auto first = listener.connect();
  const auto second = listener.connect();
  first.helper->closeHelper();
  second.helper->closeHelper();
  EXPECT_EQ(listener.stops, 1);
  EXPECT_TRUE(second.peer->isClosed);
  listener.disconnect(first);
  listener.disconnect(second);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, AnswersNothingAfterItWasToldToClose) {
  const auto client = listener.connect();
  client.helper->closeHelper();
  request(client);
  client.helper->closeHelper();
  EXPECT_EQ(children.count(), 0U);
  EXPECT_EQ(client.results(), Results{});
  EXPECT_EQ(files.removals, 0);
}

TEST_F(HelperServiceTest, RemovesNoFilesWhenToldToClose) {
  listener.connect().helper->closeHelper();
  EXPECT_EQ(files.removals, 0);
}

// unInstallHelper.

TEST_F(HelperServiceTest, RemovesItsFilesWhenToldToUninstall) {
  listener.connect().helper->unInstallHelper();
  EXPECT_EQ(files.removals, 1);
}

TEST_F(HelperServiceTest, EndsAfterUninstalling) {
  const auto client = listener.connect();
  client.helper->unInstallHelper();
  EXPECT_FALSE(listener.isListening);
  EXPECT_TRUE(client.peer->isClosed);
  listener.disconnect(client);
  EXPECT_EQ(exits, 1);
}

TEST_F(HelperServiceTest, ServesOthersUntilTheyGoAfterUninstalling) {
  const auto client = listener.connect();
  const auto other = listener.connect();
  client.helper->unInstallHelper();
  listener.disconnect(client);
  EXPECT_EQ(exits, 0);
  listener.disconnect(other);
  EXPECT_EQ(exits, 1);
}

// The end from outside.

TEST_F(HelperServiceTest, EndsAllRunsAtItsEnd) {
  const auto first = listener.connect();
  const auto second = listener.connect();
  request(first);
  request(second);
  service->end();
  EXPECT_EQ(children.running(), 0U);
}

TEST_F(HelperServiceTest, IgnoresThatAnUnknownPeerIsGone) {
  service->disconnected(std::make_shared<fakes::FakeHelperPeer>());
  pass(4999ms);
  EXPECT_EQ(exits, 0);
}

TEST_F(HelperServiceTest, StaysForWhoeverComesBackBeforeTheFiveSecondsAreOver) {
  for (int round = 0; round < 1000; ++round) {
    listener.disconnect(listener.connect());
    pass(std::chrono::milliseconds(round * 5));
    ASSERT_TRUE(listener.isListening) << "round " << round;
  }
  EXPECT_EQ(exits, 0);
}

}  // namespace
}  // namespace pallimo::helper
