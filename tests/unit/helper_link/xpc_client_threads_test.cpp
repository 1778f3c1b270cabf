// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <thread>

#include "helper_link/xpc_client.h"
#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

constexpr int kRounds = 2000;

class XPCClientThreads : public test::HelperLinkFixture {
 protected:
  XPCClientThreads() : manager(XPCManager::create(managerServices())) {
    manager->setContentModelDelegate(content);
    manager->setPowerMetricsModelDelegate(engine);
  }

  XPCClient& client() { return manager->client(); }

  /// Every connection but `kept` was resumed, ended, and has no handler left.
  void expectNothingLeaked(const std::shared_ptr<ports::HelperConnection>& kept) {
    for (const auto& connection : connector.all()) {
      EXPECT_TRUE(connection->isResumed());
      const bool isKept = connection == kept;
      EXPECT_EQ(connection->isInvalidated(), !isKept);
      EXPECT_EQ(connection->hasHandlers(), isKept);
    }
  }

  std::shared_ptr<XPCManager> manager;
};

TEST_F(XPCClientThreads, TwoThreadsThatBothFindNoConnectionEndWithOne) {
  // Each waits inside connect() until the other is there too: both have found none.
  std::atomic<int> arrived = 0;
  std::promise<void> both;
  const std::shared_future<void> bothArrived = both.get_future().share();
  connector.setOnConnect([&] {
    if (++arrived == 2) both.set_value();
    EXPECT_EQ(bothArrived.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  });

  std::shared_ptr<ports::HelperConnection> first;
  std::shared_ptr<ports::HelperConnection> second;
  std::thread other([&] { first = client().connection(); });
  second = client().connection();
  other.join();

  EXPECT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(connector.count(), 2u);
  EXPECT_EQ(client().connection(), first);
  expectNothingLeaked(first);
}

TEST_F(XPCClientThreads, TheConnectionThatLostTheRaceReportsNothing) {
  // The other thread's connection arrives while this one is being made.
  bool isNested = false;
  connector.setOnConnect([&] {
    if (std::exchange(isNested, true)) return;
    std::thread([&] { client().connection(); }).join();
  });
  client().connection();
  EXPECT_EQ(
      happened(),
      join({{"connect com.ostrovane.powermetrics 4096"},
            building(),
            {"setExportedObject", "setInvalidationHandler", "setInterruptionHandler", "resume"},
            ending()}));
}

TEST_F(XPCClientThreads, RequestsAndFailuresOnTwoThreadsLeakNoConnection) {
  std::atomic<bool> isDone = false;
  std::latch bothRun(2);
  std::thread delivery([&] {
    bothRun.arrive_and_wait();
    for (int round = 0; !isDone; ++round) {
      const auto connections = connector.all();
      if (connections.empty()) continue;
      const auto& open = connections.back();
      open->sendResult(base::Bytes{1});
      open->replyIsResponding(round % 3 != 0);
      open->replyVersion("1.0");
      if (round % 2 == 0) open->interrupt();
      if (round % 5 == 0) open->fireInvalidation();
    }
  });
  bothRun.arrive_and_wait();
  for (int round = 0; round < kRounds; ++round) {
    client().requestPowermetrics(true, 500);
    if (round % 4 == 0) client().isResponding();
    if (round % 6 == 0) client().checkVersion([](bool) {}, manager);
    if (round % 10 == 0) client().uninstall(nullptr);
    if (round % 50 == 0) manager->setContentModelDelegate(content);
  }
  isDone = true;
  delivery.join();

  client().uninstall(nullptr);
  expectNothingLeaked(client().connection());
}

TEST_F(XPCClientThreads, ThreadsThatAllDropAndReopenEndWithOneConnection) {
  const auto dropAndReopen = [&] {
    for (int round = 0; round < kRounds / 4; ++round) client().uninstall(nullptr);
  };
  std::thread first(dropAndReopen);
  std::thread second(dropAndReopen);
  dropAndReopen();
  first.join();
  second.join();
  expectNothingLeaked(client().connection());
}

}  // namespace
}  // namespace pallimo::helper_link
