// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include "adapters/linux/link/dbus_helper_connection.h"
#include "adapters/linux/link/dbus_helper_listener.h"
#include "unit/adapters/linux/link/link_fixture.h"
#include "unit/adapters/linux/link/link_peers.h"

// How a helper ends without anybody meeting it dying.

namespace pallimo::adapters::linux {
namespace {

using namespace link_test;
using Events = std::vector<std::string>;

TEST(DBusHelperStop, AStoppedListenerIsGoneForNewClients) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  helper.stop();
  EXPECT_FALSE(std::filesystem::exists(folder.state().helperSocket()));
  EXPECT_FALSE(RawSocket(folder.state()).isConnected());
  TestHelper next(folder.state());
  EXPECT_TRUE(next.hasStarted()) << "the lock is free";
}

TEST(DBusHelperStop, StoppingTwiceIsStoppingOnce) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  helper.stop();
  TestHelper next(folder.state());
  helper.stop();
  EXPECT_TRUE(RawSocket(folder.state()).isConnected());
}

TEST(DBusHelperStop, AListenerMayStartAgain) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  helper.stop();
  ASSERT_TRUE(helper.startAgain());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3"));
}

TEST(DBusHelperStop, ClientsOfAStoppedListenerAreServedOn) {
  TemporaryFolder folder;
  TestHelper helper(folder.state());
  TestApp app(folder.state());
  app.connect();
  app.askVersion();
  ASSERT_TRUE(app.log->waitFor("1.2.3"));
  helper.stop();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3", 2));
}

TEST(DBusHelperStop, ClientsInTheQueueAreAcceptedBeforeStopReturns) {
  TemporaryFolder folder;
  LoopThread thread;
  auto log = std::make_shared<EventLog>();
  EchoDelegate delegate(log);
  std::unique_ptr<DBusHelperListener> listener;
  TestApp app(folder.state());
  std::size_t acceptedInStop = 0;
  thread.call([&] {
    listener = std::make_unique<DBusHelperListener>(thread.loop(), folder.state());
    ASSERT_TRUE(listener->start(delegate));
    // While the loop stands still the clients can only queue up.
    std::vector<RawSocket> queued;
    for (int index = 0; index < 5; ++index) {
      queued.emplace_back(folder.state());
      queued.back().write(authExternal(geteuid()) + "BEGIN\r\n");
    }
    listener->stop();
    acceptedInStop = log->count("accept");
  });
  EXPECT_EQ(acceptedInStop, 5u);
  EXPECT_TRUE(log->waitFor("disconnected", 5));
  thread.call([&] { listener.reset(); });
}

TEST(DBusHelperStop, AMessageOfAClientInTheQueueIsAnswered) {
  TemporaryFolder folder;
  LoopThread thread;
  auto log = std::make_shared<EventLog>();
  EchoDelegate delegate(log);
  std::unique_ptr<DBusHelperListener> listener;
  TestApp app(folder.state());
  thread.call([&] {
    listener = std::make_unique<DBusHelperListener>(thread.loop(), folder.state());
    ASSERT_TRUE(listener->start(delegate));
    app.connect();
    app.askVersion();
    listener->stop();
  });
  // Either it was in the queue, or it came too late and nobody serves: never in between.
  ASSERT_TRUE(app.log->waitForSize(1));
  const Events events = app.log->all();
  EXPECT_TRUE(events == Events({"1.2.3"}) || events == Events({"invalidated"})) << events.front();
  app.endConnector();
  thread.call([&] { listener.reset(); });
}

TEST(DBusHelperStop, ASilentClientHoldsStopUpOnlyAsLongAsTheLimit) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.authentication = 50ms;
  TestHelper helper(folder.state(), limits);
  RawSocket silent(folder.state());
  helper.stop();
  EXPECT_TRUE(silent.meetsEnd());
  EXPECT_EQ(helper.log->all(), Events());
}

TEST(DBusHelperStop, AClientThatLeavesWhileItProvesItselfDoesNotHoldStopUp) {
  TemporaryFolder folder;
  DBusListenerLimits limits;
  limits.authentication = 10min;
  TestHelper helper(folder.state(), limits);
  { RawSocket left(folder.state()); }
  RawSocket leaving(folder.state());
  leaving.endWriting();
  helper.stop();
  EXPECT_TRUE(leaving.meetsEnd());
}

/// Helpers as launchd would start them, one after the other, each of which ends with its last
/// client: the shortest-lived helpers there can be.
class MortalHelpers {
 public:
  explicit MortalHelpers(StateFolder folder) : folder_(std::move(folder)) {}
  ~MortalHelpers() {
    thread_.call([this] { helpers_.clear(); });
  }

  HelperStart launch() {
    return thread_.call([this] {
      sweep();
      auto helper = std::make_shared<Helper>(thread_.loop(), folder_);
      helper->delegate.whenEmpty = [weak = std::weak_ptr<Helper>(helper)] {
        if (const auto self = weak.lock()) self->lastClientWent();
      };
      if (helper->listener.start(helper->delegate)) helpers_.push_back(std::move(helper));
      return HelperStart::kStarted;
    });
  }

 private:
  struct Helper {
    Helper(common::PollLoop& loop, const StateFolder& folder) : listener(loop, folder) {}
    void lastClientWent() {
      listener.stop();
      isDead = !delegate.hasPeers();
    }
    EchoDelegate delegate{std::make_shared<EventLog>()};
    DBusHelperListener listener;
    bool isDead = false;
  };

  /// A dead helper has ended like a process: whoever is still connected to it is cut off.
  void sweep() {
    std::erase_if(helpers_, [](const auto& helper) { return helper->isDead; });
  }

  const StateFolder folder_;
  LoopThread thread_;
  std::vector<std::shared_ptr<Helper>> helpers_;
};

void dropAndReopen(TestApp& app, std::size_t rounds) {
  for (std::size_t round = 1; round <= rounds; ++round) {
    app.connection.reset();
    app.connect();
    app.askIsResponding();
    ASSERT_TRUE(app.log->waitFor("yes", round)) << "round " << round;
  }
  EXPECT_EQ(app.log->count("interrupted"), 0u);
  EXPECT_EQ(app.log->count("invalidated"), 0u);
}

TEST(DBusHelperStop, AThousandRoundsOfDroppingAndReopeningNeverMeetADyingHelper) {
  TemporaryFolder folder;
  MortalHelpers helpers(folder.state());
  TestApp app(folder.state(), [&] { return helpers.launch(); });
  dropAndReopen(app, 1000);
}

TEST(DBusHelperStop, NorDoTwoAppsAtOnce) {
  TemporaryFolder folder;
  MortalHelpers helpers(folder.state());
  TestApp first(folder.state(), [&] { return helpers.launch(); });
  TestApp second(folder.state(), [&] { return helpers.launch(); });
  std::thread other([&] { dropAndReopen(second, 300); });
  dropAndReopen(first, 300);
  other.join();
}

}  // namespace
}  // namespace pallimo::adapters::linux
