// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <chrono>

#include "helper_link/xpc_manager.h"
#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

using namespace std::chrono_literals;
using test::Entries;

/// A manager whose helper is in use. Background work runs when the test lets it.
class XPCManagerRemoval : public test::HelperLinkFixture {
 protected:
  XPCManagerRemoval() : manager(XPCManager::create(managerServices())) {
    manager->setContentModelDelegate(content);
    manager->setMorebuttonModelDelegate(moreButton);
    manager->setPowerMetricsModelDelegate(engine);
    authorization.onCall = [this](const std::string& call) { journal.add(call); };
    installer.onCall = authorization.onCall;
    notifications.post(base::notification::kXPCDidInstall);
    manager->client().connection();
    forget();
  }

  /// The background task has run; nothing that it queued has.
  void uninstall() {
    manager->uninstallHelper();
    backgroundQueue.run();
  }
  void update() {
    manager->updateHelper();
    backgroundQueue.run();
  }
  void pass(std::chrono::milliseconds time) { mainQueue.advance(time); }
  auto connection() { return connector.latest(); }

  static Entries preparing() { return {"engine stopTimer", "content update"}; }
  static Entries removing() { return join({ending(), building(), {"-> unInstallHelper"}}); }
  static Entries installing() {
    return {"console: INSTALL HELPER", "createAuthorization", "bless com.ostrovane.powermetrics"};
  }

  std::shared_ptr<XPCManager> manager;
};

using XPCManagerUninstall = XPCManagerRemoval;

TEST_F(XPCManagerUninstall, BeginsOnTheBackgroundQueue) {
  manager->uninstallHelper();
  EXPECT_EQ(backgroundQueue.queuedTasks(), 1u);
  pass(10s);
  EXPECT_EQ(happened(), Entries{});
  EXPECT_FALSE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerUninstall, NothingHappensOnTheBackgroundQueueItself) {
  uninstall();
  EXPECT_EQ(happened(), Entries{});
  EXPECT_FALSE(manager->isRequestedToUninstall());
  EXPECT_EQ(mainQueue.queuedTasks(), 1u);
}

TEST_F(XPCManagerUninstall, EndsTheTimerThenPublishesInOneTaskOfTheMainQueue) {
  uninstall();
  mainQueue.run();
  EXPECT_EQ(happened(), preparing());
}

TEST_F(XPCManagerUninstall, RaisesTheRequestAndLeavesTheAuthorisation) {
  uninstall();
  mainQueue.run();
  EXPECT_TRUE(manager->isRequestedToUninstall());
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCManagerUninstall, ClearsTheNeedOfAnUpdate) {
  manager->setUpdateNeeded(true);
  uninstall();
  EXPECT_TRUE(manager->isUpdateNeeded());
  mainQueue.run();
  EXPECT_FALSE(manager->isUpdateNeeded());
}

TEST_F(XPCManagerUninstall, TheTimerEndsBeforeAnyFlagMoves) {
  struct Watching final : PowerMetricsModelDelegate {
    void setAuthorized(bool) override {}
    void stopTimer() override { seen.push_back(look()); }
    void handleResult(std::optional<base::Bytes>) override {}
    std::function<std::string()> look;
    std::vector<std::string> seen;
  };
  const auto look = [this] {
    return std::string(manager->isUpdateNeeded() ? "update needed" : "no update needed") +
           (manager->isRequestedToUninstall() ? ", requested" : ", not requested");
  };
  const auto watchingEngine = std::make_shared<Watching>();
  const auto watchingContent = std::make_shared<test::WatchingContent>(look);
  watchingEngine->look = look;
  manager->setPowerMetricsModelDelegate(watchingEngine);
  manager->setContentModelDelegate(watchingContent);
  manager->setUpdateNeeded(true);
  uninstall();
  mainQueue.run();
  EXPECT_EQ(watchingEngine->seen, Entries{"update needed, not requested"});
  EXPECT_EQ(watchingContent->seen, Entries{"no update needed, not requested"});
  EXPECT_EQ(look(), "no update needed, requested");
}

TEST_F(XPCManagerUninstall, TellsTheHelperOneSecondLaterOverAFreshConnection) {
  uninstall();
  pass(999ms);
  EXPECT_EQ(happened(), preparing());
  pass(1ms);
  EXPECT_EQ(happened(), removing());
}

TEST_F(XPCManagerUninstall, TheSecondBeginsWhenTheBackgroundTaskRuns) {
  manager->uninstallHelper();
  pass(5s);
  backgroundQueue.run();
  pass(999ms);
  EXPECT_EQ(happened(), preparing());
  pass(1ms);
  EXPECT_EQ(happened(), removing());
}

TEST_F(XPCManagerUninstall, WaitsForNoAnswerAndAsksNobodyElse) {
  uninstall();
  pass(60s);
  EXPECT_EQ(happened(), join({preparing(), removing()}));
  EXPECT_TRUE(manager->isRequestedToUninstall());
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCManagerUninstall, WithoutALinkItIsSkippedSilently) {
  connector.setConnects(false);
  uninstall();
  pass(1s);
  EXPECT_EQ(happened(), join({preparing(), ending(), {"connect com.ostrovane.powermetrics 4096"}}));
}

TEST_F(XPCManagerUninstall, TheHelpersEndWithdrawsTheAuthorisationAndTheRequest) {
  uninstall();
  pass(1s);
  connection()->interrupt();
  EXPECT_FALSE(manager->isAuthorized());
  EXPECT_FALSE(manager->isRequestedToUninstall());
  EXPECT_FALSE(manager->isUpdateNeeded());
  forget();
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{"notice ClearData"});
}

TEST_F(XPCManagerUninstall, TheEndOfTheOldConnectionIsNoInterruption) {
  const auto old = connection();
  uninstall();
  pass(1s);
  old->interrupt();
  EXPECT_TRUE(manager->isAuthorized());
  EXPECT_TRUE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerUninstall, AnInterruptionBeforeTheRequestIsSentDoesNotHoldItBack) {
  uninstall();
  pass(500ms);
  connection()->interrupt();
  forget();
  pass(500ms);
  EXPECT_EQ(happened(), join({{"notice ClearData"}, building(), {"-> unInstallHelper"}}));
}

TEST_F(XPCManagerUninstall, SkipsThePartsThatAreGone) {
  engine.reset();
  content.reset();
  uninstall();
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
  EXPECT_TRUE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerUninstall, NeitherQueueKeepsTheManagerAlive) {
  const std::weak_ptr<XPCManager> watched = manager;
  manager->uninstallHelper();
  EXPECT_EQ(watched.use_count(), 1);
  backgroundQueue.run();
  EXPECT_EQ(watched.use_count(), 1);
}

TEST_F(XPCManagerUninstall, AManagerThatIsGoneBeforeTheBackgroundTaskQueuesNothing) {
  manager->uninstallHelper();
  manager.reset();
  backgroundQueue.run();
  EXPECT_EQ(mainQueue.queuedTasks(), 0u);
  forget();
  pass(10s);
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerUninstall, AManagerThatIsGoneBeforeTheMainQueuesTasksDoesNothing) {
  uninstall();
  manager.reset();
  forget();
  pass(10s);
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerUninstall, AManagerThatIsGoneWithinTheSecondSendsNothing) {
  uninstall();
  pass(500ms);
  manager.reset();
  forget();
  pass(10s);
  EXPECT_EQ(happened(), Entries{});
}

using XPCManagerUpdate = XPCManagerRemoval;

TEST_F(XPCManagerUpdate, RemovesAfterOneSecondAndInstallsAfterTwo) {
  update();
  pass(999ms);
  EXPECT_EQ(happened(), preparing());
  pass(1ms);
  EXPECT_EQ(happened(), removing());
  connection()->interrupt();
  forget();
  pass(999ms);
  EXPECT_EQ(happened(), Entries{"notice ClearData"});
  pass(1ms);
  EXPECT_EQ(happened(), join({installing(), building(), {"-> isResponding"}}));
}

TEST_F(XPCManagerUpdate, TheOldHelpersEndGivesTheInstallationAFreshConnection) {
  const std::size_t before = connector.count();
  update();
  pass(1s);
  EXPECT_EQ(connector.count(), before + 1);
  connection()->interrupt();
  pass(1s);
  EXPECT_EQ(connector.count(), before + 2);
}

TEST_F(XPCManagerUpdate, InstallsEvenWhenTheRemovalHasNotEnded) {
  update();
  pass(1s);
  forget();
  pass(1s);
  EXPECT_EQ(happened(), join({installing(), {"-> isResponding"}}));
}

TEST_F(XPCManagerUpdate, TheTwoSecondsBeginWithTheRequestWhateverTheBackgroundQueueDoes) {
  manager->updateHelper();
  pass(1999ms);
  EXPECT_EQ(happened(), Entries{});
  pass(1ms);
  EXPECT_EQ(happened(), join({installing(), {"-> isResponding"}}));
}

TEST_F(XPCManagerUpdate, ClearsTheNeedOfAnUpdateAndRaisesTheRequestMeanwhile) {
  manager->setUpdateNeeded(true);
  update();
  mainQueue.run();
  EXPECT_FALSE(manager->isUpdateNeeded());
  EXPECT_TRUE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerUpdate, TheNewHelpersAnswerAuthorisesAndEndsTheRequest) {
  update();
  pass(1s);
  connection()->interrupt();
  pass(1s);
  forget();
  connection()->replyIsResponding(true);
  EXPECT_EQ(happened(),
            join({{"content update", "notice XPCDidInstall", "engine setAuthorized true",
                   "content update", "more button notifyChange"},
                  ending()}));
  EXPECT_TRUE(manager->isAuthorized());
  EXPECT_FALSE(manager->isRequestedToUninstall());
  EXPECT_FALSE(manager->isUpdateNeeded());
}

TEST_F(XPCManagerUpdate, AnOldHelperThatAnswersInTheNewOnesPlaceIsLeftWithItsConnection) {
  manager->setUpdateNeeded(true);
  update();
  pass(2s);
  const auto old = connection();
  forget();
  old->replyIsResponding(true);
  EXPECT_TRUE(manager->isAuthorized());
  EXPECT_FALSE(manager->isUpdateNeeded());
  EXPECT_FALSE(manager->isRequestedToUninstall());
  EXPECT_TRUE(old->isInvalidated());
  old->interrupt();  // only now it ends
  EXPECT_TRUE(manager->isAuthorized());
  forget();
  manager->requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCManagerUpdate, ARefusedInstallationWithdrawsTheAuthorisation) {
  installer.blesses = false;
  update();
  pass(2s);
  EXPECT_FALSE(manager->isAuthorized());
  EXPECT_FALSE(manager->isRequestedToUninstall());
}

TEST_F(XPCManagerUpdate, AManagerThatIsGoneInstallsNothing) {
  update();
  const std::weak_ptr<XPCManager> watched = manager;
  EXPECT_EQ(watched.use_count(), 1);
  pass(1500ms);
  manager.reset();
  EXPECT_TRUE(watched.expired());
  forget();
  pass(10s);
  EXPECT_EQ(happened(), Entries{});
  EXPECT_TRUE(installer.calls.empty());
}

}  // namespace
}  // namespace pallimo::helper_link
