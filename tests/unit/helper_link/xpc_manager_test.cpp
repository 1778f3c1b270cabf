// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/xpc_manager.h"

#include <functional>
#include <thread>
#include <utility>

#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

using test::Entries;

class XPCManagerTest : public test::HelperLinkFixture {
 protected:
  void createManager(Processor processor = Processor::appleSilicon) {
    manager = XPCManager::create(managerServices(processor));
    manager->setContentModelDelegate(content);
    manager->setMorebuttonModelDelegate(moreButton);
    manager->setPowerMetricsModelDelegate(engine);
  }
  auto connection() { return connector.latest(); }
  void postDidInstall() { notifications.post(base::notification::kXPCDidInstall); }
  void postInstallError() { notifications.post(base::notification::kXPCInstallError); }

  void expectFlags(bool isAuthorized, bool isUpdateNeeded, bool isRequestedToUninstall) {
    EXPECT_EQ(manager->isAuthorized(), isAuthorized);
    EXPECT_EQ(manager->isUpdateNeeded(), isUpdateNeeded);
    EXPECT_EQ(manager->isRequestedToUninstall(), isRequestedToUninstall);
  }

  /// What follows a re-evaluation that finds the helper usable, or not.
  static Entries applying(const std::string& isAuthorized) {
    return {"engine setAuthorized " + isAuthorized, "content update", "more button notifyChange"};
  }

  std::shared_ptr<XPCManager> manager;
};

TEST_F(XPCManagerTest, StartsWithAllFlagsDown) {
  createManager();
  expectFlags(false, false, false);
}

TEST_F(XPCManagerTest, StartsWithoutContactingTheHelper) {
  createManager();
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerTest, SaysWhenItIsDestroyed) {
  createManager();
  manager.reset();
  EXPECT_EQ(happened(), (Entries{"console: DEINIT XPCManager"}));
}

TEST_F(XPCManagerTest, HandsTheResultsOfItsClientToTheEngine) {
  createManager();
  manager->client().connection();
  connection()->sendResult(base::Bytes{7});
  ASSERT_EQ(engine->results.size(), 1u);
  EXPECT_EQ(engine->results[0], (base::Bytes{7}));
}

TEST_F(XPCManagerTest, ForwardsRequestsToTheHelper) {
  createManager();
  manager->requestPowermetrics(true, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000 GPU"}}));
}

TEST_F(XPCManagerTest, AFreshlyInstalledHelperAuthorises) {
  createManager();
  postDidInstall();
  expectFlags(true, false, false);
  EXPECT_EQ(happened(), join({{"notice XPCDidInstall"}, applying("true")}));
}

TEST_F(XPCManagerTest, AUsableHelperClearsNothing) {
  createManager();
  postDidInstall();
  forget();
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerTest, AnInstallErrorWithdrawsTheAuthorisation) {
  createManager();
  postDidInstall();
  forget();
  postInstallError();
  expectFlags(false, false, false);
  EXPECT_EQ(happened(), join({{"notice XPCInstallError"}, applying("false")}));
}

TEST_F(XPCManagerTest, AnInstallErrorEmptiesTheHistoriesLaterOnTheMainQueue) {
  createManager();
  postInstallError();
  forget();
  EXPECT_EQ(mainQueue.queuedTasks(), 1u);
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"notice ClearData"}));
}

TEST_F(XPCManagerTest, AnInstallErrorLeavesTheNeedOfAnUpdate) {
  createManager();
  manager->setUpdateNeeded(true);
  postInstallError();
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCManagerTest, SkipsThePartsThatAreGone) {
  createManager();
  engine.reset();
  postDidInstall();
  EXPECT_EQ(happened(),
            (Entries{"notice XPCDidInstall", "content update", "more button notifyChange"}));
  content.reset();
  postDidInstall();
  EXPECT_EQ(happened(), (Entries{"notice XPCDidInstall", "more button notifyChange"}));
  moreButton.reset();
  postDidInstall();
  EXPECT_EQ(happened(), (Entries{"notice XPCDidInstall"}));
}

TEST_F(XPCManagerTest, KeepsNoneOfItsDelegatesAlive) {
  createManager();
  const auto utilization = std::make_shared<UtilizationModelDelegate>();
  manager->setUtilizationModelDelegate(utilization);
  EXPECT_EQ(utilization.use_count(), 1);
  EXPECT_EQ(content.use_count(), 1);
  EXPECT_EQ(moreButton.use_count(), 1);
  EXPECT_EQ(engine.use_count(), 1);
}

TEST_F(XPCManagerTest, ItsObserversDoNotKeepItAlive) {
  createManager();
  const std::weak_ptr<XPCManager> watched = manager;
  manager.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(XPCManagerTest, HearsNoNoticeOnceItIsGone) {
  createManager();
  manager.reset();
  forget();
  postDidInstall();
  postInstallError();
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"notice XPCDidInstall", "notice XPCInstallError"}));
}

TEST_F(XPCManagerTest, EmptiesTheHistoriesEvenIfItIsGoneMeanwhile) {
  createManager();
  postInstallError();
  manager.reset();
  forget();
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"notice ClearData"}));
}

/// An engine that does something when it is first told, and remembers what it was told.
struct ActingEngine final : PowerMetricsModelDelegate {
  void setAuthorized(bool flag) override {
    if (const auto act = std::exchange(first, nullptr)) act();
    told.push_back(flag);
  }
  void stopTimer() override {}
  void handleResult(std::optional<base::Bytes>) override {}
  std::function<void()> first;
  std::vector<bool> told;
};

TEST_F(XPCManagerTest, TheRequestForRemovalIsWithdrawnBeforeTheEngineIsTold) {
  createManager();
  manager->uninstallHelper();
  backgroundQueue.run();
  mainQueue.run();
  ASSERT_TRUE(manager->isRequestedToUninstall());
  const auto acting = std::make_shared<ActingEngine>();
  bool wasRequested = true;
  acting->first = [&] { wasRequested = manager->isRequestedToUninstall(); };
  manager->setPowerMetricsModelDelegate(acting);
  postDidInstall();
  EXPECT_EQ(acting->told, std::vector<bool>{true});
  EXPECT_FALSE(wasRequested);
}

TEST_F(XPCManagerTest, TheGraphsAreToBeClearedBeforeTheEngineIsTold) {
  createManager();
  const auto acting = std::make_shared<ActingEngine>();
  std::size_t queued = 0;
  acting->first = [&] { queued = mainQueue.queuedTasks(); };
  manager->setPowerMetricsModelDelegate(acting);
  postInstallError();
  EXPECT_EQ(acting->told, std::vector<bool>{false});
  EXPECT_EQ(queued, 1u);
}

TEST_F(XPCManagerTest, TheLastWordToTheEngineIsTheFlagThatStands) {
  // The opposite notice is handled whole while this one is about to tell the engine.
  for (const bool isAuthorizedLast : {false, true}) {
    createManager();
    const auto acting = std::make_shared<ActingEngine>();
    acting->first = [&] {
      std::thread([&] { isAuthorizedLast ? postDidInstall() : postInstallError(); }).join();
    };
    manager->setPowerMetricsModelDelegate(acting);
    isAuthorizedLast ? postInstallError() : postDidInstall();
    EXPECT_EQ(manager->isAuthorized(), isAuthorizedLast);
    EXPECT_EQ(acting->told,
              (std::vector<bool>{isAuthorizedLast, !isAuthorizedLast, isAuthorizedLast}));
  }
}

class XPCManagerOnOtherProcessor : public XPCManagerTest {
 protected:
  XPCManagerOnOtherProcessor() { createManager(Processor::other); }
};

TEST_F(XPCManagerOnOtherProcessor, ObservesNoNotice) {
  postDidInstall();
  EXPECT_FALSE(manager->isAuthorized());
  postInstallError();
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"notice XPCDidInstall", "notice XPCInstallError"}));
}

TEST_F(XPCManagerOnOtherProcessor, NeverContactsTheHelper) {
  manager->checkHelperAtStart(content);
  manager->requestPowermetrics(true, 500);
  manager->installHelper();
  manager->uninstallHelper();
  manager->updateHelper();
  manager->closeHelper();
  backgroundQueue.run();
  mainQueue.advance(std::chrono::seconds(10));
  EXPECT_EQ(connector.count(), 0u);
  EXPECT_TRUE(authorization.calls.empty());
  EXPECT_TRUE(installer.calls.empty());
  expectFlags(false, false, false);
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerOnOtherProcessor, LeavesTheContentModelUnregisteredAtTheStart) {
  manager->setContentModelDelegate({});
  manager->checkHelperAtStart(content);
  EXPECT_EQ(manager->contentModelDelegate(), nullptr);
}

TEST_F(XPCManagerOnOtherProcessor, DropsTheResultsOfItsClient) {
  manager->client().powermetricsResult(base::Bytes{1});
  EXPECT_TRUE(engine->results.empty());
}

class XPCManagerCheckAtStart : public XPCManagerTest {
 protected:
  XPCManagerCheckAtStart() {
    createManager();
    manager->setContentModelDelegate({});
    bundle.embedHelper("1.0");
  }
  void check() {
    manager->checkHelperAtStart(content);
    forget();
  }
  /// The helper answers both questions of the start-up check.
  void answerWithVersion(const std::string& version) {
    ASSERT_TRUE(connection()->replyIsResponding(true));
    ASSERT_TRUE(connection()->replyVersion(version));
  }
};

TEST_F(XPCManagerCheckAtStart, RegistersTheContentModelAndAsksWhetherTheHelperAnswers) {
  manager->checkHelperAtStart(content);
  EXPECT_EQ(manager->contentModelDelegate(), content);
  EXPECT_EQ(happened(), join({building(), {"-> isResponding"}}));
}

TEST_F(XPCManagerCheckAtStart, ASilentHelperLeavesEverythingAsItIs) {
  check();
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
  expectFlags(false, false, false);
}

TEST_F(XPCManagerCheckAtStart, AHelperThatAnswersNoLeavesEverythingAsItIs) {
  check();
  connection()->replyIsResponding(false);
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
  expectFlags(false, false, false);
}

TEST_F(XPCManagerCheckAtStart, WithoutALinkNothingIsAskedAndNothingChanges) {
  connector.setConnects(false);
  check();
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
  expectFlags(false, false, false);
}

TEST_F(XPCManagerCheckAtStart, AHelperThatAnswersIsAskedForItsVersionOnTheSameConnection) {
  check();
  connection()->replyIsResponding(true);
  EXPECT_EQ(happened(), (Entries{"-> getVersion"}));
  expectFlags(false, false, false);
}

TEST_F(XPCManagerCheckAtStart, TheSameVersionAuthorisesAndPublishesOnceMoreOnTheMainQueue) {
  check();
  answerWithVersion("1.0");
  expectFlags(true, false, false);
  EXPECT_EQ(happened(), join({{"-> getVersion"}, applying("true")}));
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"content update"}));
}

TEST_F(XPCManagerCheckAtStart, ADifferentVersionNeedsAnUpdateAndPublishes) {
  check();
  answerWithVersion("1.1");
  expectFlags(false, true, false);
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"-> getVersion", "content update"}));
}

TEST_F(XPCManagerCheckAtStart, TheNeedOfAnUpdateStandsBeforeItIsPublished) {
  const auto watching = std::make_shared<test::WatchingContent>(
      [this] { return std::string(manager->isUpdateNeeded() ? "needed" : "not needed"); });
  manager->checkHelperAtStart(watching);
  answerWithVersion("1.1");
  EXPECT_EQ(watching->seen, Entries{"needed"});
}

TEST_F(XPCManagerCheckAtStart, AnAbsentEmbeddedVersionNeedsAnUpdate) {
  bundle.embedHelper(std::nullopt);
  check();
  answerWithVersion("1.0");
  expectFlags(false, true, false);
}

TEST_F(XPCManagerCheckAtStart, ALinkThatGoesBetweenTheQuestionsNeedsAnUpdate) {
  check();
  const auto answer = connection()->takeIsRespondingReply();
  connector.setConnects(false);
  manager->client().uninstall(nullptr);
  answer(true);
  expectFlags(false, true, false);
}

TEST_F(XPCManagerCheckAtStart, AManagerThatIsGoneIgnoresTheAnswer) {
  check();
  const auto open = connection();
  manager.reset();
  forget();
  open->replyIsResponding(true);
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerCheckAtStart, AManagerThatIsGoneIgnoresTheVersion) {
  check();
  const auto open = connection();
  open->replyIsResponding(true);
  manager.reset();
  forget();
  open->replyVersion("1.0");
  mainQueue.run();
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCManagerCheckAtStart, AContentModelThatIsGoneIsSkipped) {
  check();
  content.reset();
  answerWithVersion("1.0");
  mainQueue.run();
  expectFlags(true, false, false);
  EXPECT_EQ(happened(),
            (Entries{"-> getVersion", "engine setAuthorized true", "more button notifyChange"}));
}

TEST_F(XPCManagerCheckAtStart, AnInterruptionLeavesTheHelperUnauthorisedUntilAnotherCheckSucceeds) {
  check();
  answerWithVersion("1.0");
  connection()->interrupt();
  expectFlags(false, false, false);
  manager->requestPowermetrics(false, 500);
  EXPECT_EQ(connector.count(), 2u);
  EXPECT_FALSE(manager->isAuthorized());
  manager->checkHelperAtStart(content);
  answerWithVersion("1.0");
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCManagerCheckAtStart, ADifferentCaseOrPaddingOfTheVersionNeedsAnUpdate) {
  bundle.embedHelper("1.0b");
  for (const char* version : {"1.0B", "1.0b ", " 1.0b", "01.0b", "1.0b.0", ""}) {
    manager->setUpdateNeeded(false);
    check();
    answerWithVersion(version);
    EXPECT_TRUE(manager->isUpdateNeeded()) << version;
    EXPECT_FALSE(manager->isAuthorized()) << version;
  }
}

TEST_F(XPCManagerCheckAtStart, AnEmbeddedVersionThatIsNoTextNeedsAnUpdate) {
  bundle.embedHelperWithInfo(base::PropertyList(
      base::PropertyListDictionary{{"CFBundleShortVersionString", base::PropertyList(1.0)}}));
  check();
  answerWithVersion("1.0");
  expectFlags(false, true, false);
}

}  // namespace
}  // namespace pallimo::helper_link
