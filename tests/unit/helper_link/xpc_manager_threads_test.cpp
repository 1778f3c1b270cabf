// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <atomic>
#include <chrono>
#include <latch>
#include <thread>

#include "helper_link/xpc_manager.h"
#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

constexpr int kRounds = 500;

/// Replies and failures on one thread, the user and the main queue on another, readers beside them.
class XPCManagerThreads : public test::HelperLinkFixture {
 protected:
  XPCManagerThreads() : manager(XPCManager::create(managerServices())) {
    bundle.embedHelper("1.0");
    backgroundQueue.runAtOnce();
    manager->setContentModelDelegate(content);
    manager->setMorebuttonModelDelegate(moreButton);
    manager->setPowerMetricsModelDelegate(engine);
  }

  /// What the delivery thread does with the newest connection.
  void deliver(int round) {
    const auto connections = connector.all();
    if (connections.empty()) return;
    const auto& open = connections.back();
    open->replyIsResponding(round % 4 != 0);
    open->replyVersion(round % 3 == 0 ? "0.9" : "1.0");
    if (round % 5 == 0) open->interrupt();
    if (round % 7 == 0) open->fireInvalidation();
  }

  std::shared_ptr<XPCManager> manager;
};

TEST_F(XPCManagerThreads, FlagsAreReadWhileRepliesSetThemAndTheUserUpdatesAndRemoves) {
  std::atomic<bool> isDone = false;
  std::latch allRun(3);
  std::thread delivery([&] {
    allRun.arrive_and_wait();
    for (int round = 0; !isDone; ++round) deliver(round);
  });
  std::atomic<int> seen = 0;
  std::thread reader([&] {
    allRun.arrive_and_wait();
    while (!isDone) {
      seen = seen + manager->isAuthorized() + manager->isUpdateNeeded() +
             manager->isRequestedToUninstall();
    }
  });
  allRun.arrive_and_wait();
  for (int round = 0; round < kRounds; ++round) {
    manager->checkHelperAtStart(content);
    if (round % 2 == 0) manager->installHelper();
    if (round % 4 == 0) manager->updateHelper();
    if (round % 6 == 0) manager->uninstallHelper();
    manager->requestPowermetrics(true, 500);
    mainQueue.advance(std::chrono::milliseconds(400));
  }
  isDone = true;
  delivery.join();
  reader.join();

  // Whatever happened, the next installation makes the helper usable again.
  mainQueue.advance(std::chrono::seconds(3));
  manager->client().uninstall(nullptr);
  manager->installHelper();
  connector.latest()->replyIsResponding(true);
  EXPECT_TRUE(manager->isAuthorized());
  EXPECT_FALSE(manager->isUpdateNeeded());
  EXPECT_FALSE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerThreads, AFlagThatAReplySetIsSeenByAnotherThread) {
  std::atomic<bool> hasSeen = false;
  std::thread reader([&] {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!hasSeen && std::chrono::steady_clock::now() < deadline) {
      hasSeen = manager->isAuthorized();
      std::this_thread::yield();
    }
  });
  manager->installHelper();
  connector.latest()->replyIsResponding(true);
  reader.join();
  EXPECT_TRUE(hasSeen);
}

TEST_F(XPCManagerThreads, AManagerMayGoWhileItsBackgroundTaskRuns) {
  for (int round = 0; round < kRounds; ++round) {
    fakes::ManualBackgroundQueue background;
    XPCManager::Services services = managerServices();
    auto other = XPCManager::create(
        {services.client, mainQueue, background, authorization, installer, services.processor});
    other->uninstallHelper();
    // The last link is let go here: the standard library counts links out of the sanitizer's sight.
    const std::weak_ptr<XPCManager> last = other;
    std::thread runs([&] { background.run(); });
    other.reset();
    runs.join();
    mainQueue.advance(std::chrono::seconds(1));
  }
  EXPECT_FALSE(manager->isRequestedToUninstall());
}

}  // namespace
}  // namespace pallimo::helper_link
