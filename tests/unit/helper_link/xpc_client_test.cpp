// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/xpc_client.h"

#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

using test::Entries;

/// A client whose manager is wired as the composition root wires it; the observers of the manager
/// are silent here unless a test looks at them.
class XPCClientTest : public test::HelperLinkFixture {
 protected:
  XPCClientTest() : manager(XPCManager::create(managerServices())) {
    manager->setContentModelDelegate(content);
    manager->setPowerMetricsModelDelegate(engine);
  }

  XPCClient& client() { return manager->client(); }
  auto connection() { return connector.latest(); }
  /// Opens the connection and forgets how.
  void connect() {
    client().connection();
    forget();
  }

  /// A content model that notes at each of its updates whether an update of the helper is needed.
  std::shared_ptr<test::WatchingContent> watchUpdateNeeded() {
    auto watching = std::make_shared<test::WatchingContent>(
        [this] { return std::string(manager->isUpdateNeeded() ? "needed" : "not needed"); });
    manager->setContentModelDelegate(watching);
    return watching;
  }

  std::shared_ptr<XPCManager> manager;
};

TEST_F(XPCClientTest, OpensNoConnectionByItself) { EXPECT_EQ(connector.count(), 0u); }

TEST_F(XPCClientTest, BuildsTheConnectionInTheFixedOrder) {
  EXPECT_NE(client().connection(), nullptr);
  EXPECT_EQ(happened(), (Entries{"connect com.ostrovane.powermetrics 4096", "setExportedObject",
                                 "setInvalidationHandler", "setInterruptionHandler", "resume"}));
}

TEST_F(XPCClientTest, ExportsItself) {
  client().connection();
  EXPECT_EQ(connection()->exportedObject(), &client());
}

TEST_F(XPCClientTest, KeepsTheConnectionItHas) {
  const auto first = client().connection();
  EXPECT_EQ(client().connection(), first);
  EXPECT_EQ(connector.count(), 1u);
}

TEST_F(XPCClientTest, HasNoConnectionWhenNoneCanBeMade) {
  connector.setConnects(false);
  EXPECT_EQ(client().connection(), nullptr);
}

TEST_F(XPCClientTest, TriesAgainAfterNoConnectionCouldBeMade) {
  connector.setConnects(false);
  client().connection();
  connector.setConnects(true);
  EXPECT_NE(client().connection(), nullptr);
}

TEST_F(XPCClientTest, ForwardsARequestWithPeriodAndGPUFlag) {
  connect();
  client().requestPowermetrics(true, 500);
  EXPECT_EQ(happened(), (Entries{"-> requestPowermetrics 500.000000 GPU"}));
  client().requestPowermetrics(false, 1234.5);
  EXPECT_EQ(happened(), (Entries{"-> requestPowermetrics 1234.500000"}));
}

TEST_F(XPCClientTest, OpensTheConnectionForARequest) {
  client().requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCClientTest, SkipsEveryPlainCallSilentlyWithoutAConnection) {
  connector.setConnects(false);
  client().requestPowermetrics(true, 500);
  client().askIsResponding([this](bool) { journal.add("reply"); });
  client().isResponding();
  client().closeHelper();
  EXPECT_EQ(happened(), Entries(4, "connect com.ostrovane.powermetrics 4096"));
}

TEST_F(XPCClientTest, SkipsEveryPlainCallSilentlyWithoutAProxy) {
  connector.setHasProxies(false);
  client().requestPowermetrics(true, 500);
  client().askIsResponding([this](bool) { journal.add("reply"); });
  client().isResponding();
  client().closeHelper();
  EXPECT_EQ(happened(), building());
}

TEST_F(XPCClientTest, HandsTheAnswerToWhoAskedAndKeepsTheConnection) {
  std::vector<bool> answers;
  client().askIsResponding([&](bool answer) { answers.push_back(answer); });
  EXPECT_TRUE(answers.empty());
  connection()->replyIsResponding(true);
  EXPECT_EQ(answers, std::vector<bool>{true});
  EXPECT_FALSE(connection()->isInvalidated());
}

TEST_F(XPCClientTest, TellsTheHelperToClose) {
  connect();
  client().closeHelper();
  EXPECT_EQ(happened(), (Entries{"clearInterruptionHandler", "-> closeHelper"}));
}

TEST_F(XPCClientTest, OpensTheConnectionToClose) {
  client().closeHelper();
  EXPECT_EQ(happened(), join({building(), {"clearInterruptionHandler", "-> closeHelper"}}));
}

TEST_F(XPCClientTest, AHelperThatEndsBecauseItWasToldToIsNoInterruption) {
  connect();
  client().closeHelper();
  forget();
  connection()->interrupt();
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCClientTest, HandsAResultToTheEngine) {
  connect();
  connection()->sendResult(base::Bytes{1, 2, 3});
  ASSERT_EQ(engine->results.size(), 1u);
  EXPECT_EQ(engine->results[0], (base::Bytes{1, 2, 3}));
}

TEST_F(XPCClientTest, HandsAnAbsentResultToTheEngineAsAbsent) {
  connect();
  connection()->sendResult(std::nullopt);
  ASSERT_EQ(engine->results.size(), 1u);
  EXPECT_EQ(engine->results[0], std::nullopt);
}

TEST_F(XPCClientTest, TellsAnEmptyResultFromAnAbsentOne) {
  connect();
  connection()->sendResult(base::Bytes{});
  ASSERT_EQ(engine->results.size(), 1u);
  EXPECT_EQ(engine->results[0], base::Bytes{});
}

TEST_F(XPCClientTest, DropsAResultWhenTheEngineIsGone) {
  connect();
  engine.reset();
  connection()->sendResult(base::Bytes{1});
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCClientTest, DropsAResultWhenTheManagerIsGone) {
  connect();
  manager.reset();
  forget();
  connection()->sendResult(base::Bytes{1});
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCClientTest, AnInterruptionIsLoggedThenDroppedThenAnnouncedThenPrinted) {
  const auto alone = XPCClient::create(clientServices());
  alone->connection();
  manager.reset();
  forget();
  connection()->interrupt();
  EXPECT_EQ(happened(),
            (Entries{"log: [XPCTEST] XPCClient: connection has been interrupted XPCTEST",
                     "clearInterruptionHandler", "clearInvalidationHandler", "invalidate",
                     "notice XPCInstallError", "console: connetionInterruptionHandler"}));
}

TEST_F(XPCClientTest, AnInvalidationIsLoggedThenDroppedThenPrintedAndNotAnnounced) {
  connect();
  connection()->fireInvalidation();
  EXPECT_EQ(happened(),
            (Entries{"log: [XPCTEST] XPCClient: connection has been invalidated XPCTEST",
                     "clearInterruptionHandler", "clearInvalidationHandler", "invalidate",
                     "console: connectionInvalidationHandler"}));
}

TEST_F(XPCClientTest, AnInterruptionWithdrawsTheAuthorisation) {
  connect();
  notifications.post(base::notification::kXPCDidInstall);
  ASSERT_TRUE(manager->isAuthorized());
  connection()->interrupt();
  EXPECT_FALSE(manager->isAuthorized());
}

TEST_F(XPCClientTest, AnInvalidationDoesNotWithdrawTheAuthorisation) {
  connect();
  notifications.post(base::notification::kXPCDidInstall);
  connection()->fireInvalidation();
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCClientTest, OpensANewConnectionAfterAnInterruption) {
  connect();
  connection()->interrupt();
  forget();
  client().requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCClientTest, OpensANewConnectionAfterAnInvalidation) {
  connect();
  connection()->fireInvalidation();
  forget();
  client().requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCClientTest, AConnectionThatFailsAsSoonAsItIsResumedIsNotKept) {
  connector.setFailsAtOnce(true);
  client().requestPowermetrics(false, 500);
  EXPECT_TRUE(connection()->isInvalidated());
  connector.setFailsAtOnce(false);
  forget();
  client().requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCClientTest, AHandlerThatIsAlreadyRunningLeavesTheNextConnectionAlone) {
  connect();
  const auto interruption = connection()->interruptionHandler();
  const auto invalidation = connection()->invalidationHandler();
  client().uninstall(nullptr);
  interruption();
  invalidation();
  EXPECT_FALSE(connection()->isInvalidated());
  EXPECT_EQ(client().connection(), connection());
}

TEST_F(XPCClientTest, AConnectionThatTwoWantToDropIsEndedOnce) {
  const auto alone = XPCClient::create(clientServices());
  alone->connection();
  manager.reset();
  const auto interruption = connection()->interruptionHandler();
  alone->uninstall(nullptr);
  forget();
  interruption();
  EXPECT_EQ(happened(),
            (Entries{"log: [XPCTEST] XPCClient: connection has been interrupted XPCTEST",
                     "notice XPCInstallError", "console: connetionInterruptionHandler"}));
}

TEST_F(XPCClientTest, TheHandlersKeepTheClientAlive) {
  const auto client = XPCClient::create(clientServices());
  const std::weak_ptr<XPCClient> watched = client;
  client->connection();
  EXPECT_EQ(watched.use_count(), 1 + 3);  // this test, exported object, two handlers
}

TEST_F(XPCClientTest, IsLetGoOnceItsConnectionIsDropped) {
  auto client = XPCClient::create(clientServices());
  const std::weak_ptr<XPCClient> watched = client;
  client->connection();
  client.reset();
  EXPECT_FALSE(watched.expired());
  connection()->interrupt();
  EXPECT_TRUE(watched.expired());
}

TEST_F(XPCClientTest, IsDestroyedWithoutSendingAnything) {
  auto client = XPCClient::create(clientServices());
  client->connection();
  forget();
  connection()->letGo();
  client.reset();
  EXPECT_EQ(happened(), Entries{});
}

TEST_F(XPCClientTest, TheProbeAnnouncesAHelperThatAnswersThenDropsTheConnection) {
  const auto silent = XPCClient::create(clientServices());
  silent->isResponding();
  EXPECT_EQ(happened(), join({building(), {"-> isResponding"}}));
  manager.reset();
  forget();
  connection()->replyIsResponding(true);
  EXPECT_EQ(happened(), join({{"notice XPCDidInstall"}, ending()}));
}

TEST_F(XPCClientTest, TheProbeClearsUpdateNeededAndPublishesBeforeItAnnounces) {
  manager->setUpdateNeeded(true);
  client().isResponding();
  forget();
  connection()->replyIsResponding(true);
  EXPECT_FALSE(manager->isUpdateNeeded());
  const Entries entries = happened();
  ASSERT_GE(entries.size(), 2u);
  EXPECT_EQ(entries[0], "content update");
  EXPECT_EQ(entries[1], "notice XPCDidInstall");
}

TEST_F(XPCClientTest, WhatTheProbeClearsIsClearBeforeItIsPublished) {
  const auto watching = watchUpdateNeeded();
  manager->setUpdateNeeded(true);
  client().isResponding();
  connection()->replyIsResponding(true);
  EXPECT_EQ(watching->seen.at(0), "not needed");
}

TEST_F(XPCClientTest, TheProbeThatIsAnsweredNoAnnouncesNothingAndDropsTheConnection) {
  manager->setUpdateNeeded(true);
  client().isResponding();
  forget();
  connection()->replyIsResponding(false);
  EXPECT_EQ(happened(), ending());
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCClientTest, OpensAFreshConnectionAfterTheProbe) {
  client().isResponding();
  connection()->replyIsResponding(true);
  forget();
  client().requestPowermetrics(false, 500);
  EXPECT_EQ(happened(), join({building(), {"-> requestPowermetrics 500.000000"}}));
}

TEST_F(XPCClientTest, TheProbesEndLeavesAConnectionAloneThatWasOpenedAtItsAnnouncement) {
  const auto removal = notifications.observe(base::notification::kXPCDidInstall,
                                             [this] { client().uninstall(nullptr); });
  client().isResponding();
  const auto probed = connection();
  probed->replyIsResponding(true);
  ASSERT_EQ(connector.count(), 2u);
  EXPECT_TRUE(probed->isInvalidated());
  EXPECT_FALSE(connection()->isInvalidated());
  EXPECT_TRUE(connection()->hasHandlers());
  EXPECT_EQ(client().connection(), connection());
}

TEST_F(XPCClientTest, AnAnswerThatIsLateLeavesTheNextConnectionAlone) {
  for (const bool answer : {true, false}) {
    client().isResponding();
    const auto late = connection()->takeIsRespondingReply();
    client().uninstall(nullptr);
    late(answer);
    EXPECT_FALSE(connection()->isInvalidated());
    EXPECT_EQ(client().connection(), connection());
    client().uninstall(nullptr);
  }
}

TEST_F(XPCClientTest, AProbeIsOpenUntilItIsAnswered) {
  for (const bool answer : {true, false}) {
    EXPECT_FALSE(client().isProbeOpen());
    client().isResponding();
    EXPECT_TRUE(client().isProbeOpen());
    connection()->replyIsResponding(answer);
    EXPECT_FALSE(client().isProbeOpen());
    client().connection();
  }
}

TEST_F(XPCClientTest, AProbeIsOverWithItsConnection) {
  client().isResponding();
  connection()->interrupt();
  EXPECT_FALSE(client().isProbeOpen());
  client().isResponding();
  connection()->fireInvalidation();
  EXPECT_FALSE(client().isProbeOpen());
  client().isResponding();
  client().uninstall(nullptr);
  EXPECT_FALSE(client().isProbeOpen());
}

TEST_F(XPCClientTest, AProbeOutlivesTheEndOfAnEarlierConnection) {
  connect();
  const auto old = connection()->interruptionHandler();
  client().uninstall(nullptr);
  client().isResponding();
  old();
  EXPECT_TRUE(client().isProbeOpen());
}

TEST_F(XPCClientTest, AProbeThatWasNotSentIsNotOpen) {
  connector.setHasProxies(false);
  client().isResponding();
  EXPECT_FALSE(client().isProbeOpen());
}

TEST_F(XPCClientTest, TheProbeNeedsNoContentModel) {
  client().isResponding();
  forget();
  content.reset();
  connection()->replyIsResponding(true);
  EXPECT_EQ(happened()[0], "notice XPCDidInstall");
}

TEST_F(XPCClientTest, UninstallDropsTheConnectionAndTellsTheHelperOverAFreshOne) {
  connect();
  client().uninstall([this](bool sent) { journal.add(sent ? "sent" : "not sent"); });
  EXPECT_EQ(happened(), join({ending(), building(), {"-> unInstallHelper", "sent"}}));
}

TEST_F(XPCClientTest, UninstallWithoutAConnectionJustOpensOne) {
  client().uninstall([this](bool sent) { journal.add(sent ? "sent" : "not sent"); });
  EXPECT_EQ(happened(), join({building(), {"-> unInstallHelper", "sent"}}));
}

TEST_F(XPCClientTest, UninstallReportsAMissingConnection) {
  connector.setConnects(false);
  std::optional<bool> sent;
  client().uninstall([&](bool flag) { sent = flag; });
  EXPECT_EQ(sent, false);
}

TEST_F(XPCClientTest, UninstallReportsAMissingProxy) {
  connector.setHasProxies(false);
  std::optional<bool> sent;
  client().uninstall([&](bool flag) { sent = flag; });
  EXPECT_EQ(sent, false);
}

TEST_F(XPCClientTest, UninstallNeedsNoCompletion) {
  client().uninstall(nullptr);
  EXPECT_EQ(happened(), join({building(), {"-> unInstallHelper"}}));
}

class XPCClientVersion : public XPCClientTest {
 protected:
  /// The verdict when the app embeds one version and the helper reports another.
  std::optional<bool> verdict(std::optional<std::string> embedded, const std::string& running) {
    bundle.embedHelper(std::move(embedded));
    return verdict(running);
  }
  /// The verdict on what the app embeds already.
  std::optional<bool> verdict(const std::string& running) {
    std::optional<bool> result;
    client().checkVersion([&](bool isSame) { result = isSame; }, manager);
    EXPECT_EQ(result, std::nullopt) << "answered before the helper did";
    connection()->replyVersion(running);
    return result;
  }
};

TEST_F(XPCClientVersion, AsksTheHelperForItsVersion) {
  client().checkVersion([](bool) {}, manager);
  EXPECT_EQ(happened(), join({building(), {"-> getVersion"}}));
}

TEST_F(XPCClientVersion, EqualVersionsMatch) { EXPECT_EQ(verdict("1.2", "1.2"), true); }

TEST_F(XPCClientVersion, DifferentVersionsDoNotMatch) { EXPECT_EQ(verdict("1.2", "1.3"), false); }

TEST_F(XPCClientVersion, ADifferentCaseDoesNotMatch) { EXPECT_EQ(verdict("1.2b", "1.2B"), false); }

TEST_F(XPCClientVersion, PaddingDoesNotMatch) {
  EXPECT_EQ(verdict("1.2", "1.2 "), false);
  EXPECT_EQ(verdict("1.2", "1.2.0"), false);
  EXPECT_EQ(verdict("1.2", "01.2"), false);
}

TEST_F(XPCClientVersion, AnAbsentEmbeddedVersionMatchesNothing) {
  EXPECT_EQ(verdict(std::nullopt, "1.2"), false);
  EXPECT_EQ(verdict(std::nullopt, ""), false);
}

TEST_F(XPCClientVersion, TheEmbeddedHelperIsLookedUpWhereTheSystemInstallsFrom) {
  client().checkVersion([](bool) {}, manager);
  EXPECT_EQ(bundle.takeAsked(),
            (Entries{"Contents/Library/LaunchServices/com.ostrovane.powermetrics"}));
}

TEST_F(XPCClientVersion, AnInfoDictionaryWithoutAVersionMatchesNothing) {
  bundle.embedHelperWithInfo(base::PropertyList(
      base::PropertyListDictionary{{"CFBundleVersion", base::PropertyList(std::string("1.2"))}}));
  EXPECT_EQ(verdict("1.2"), false);
}

TEST_F(XPCClientVersion, AVersionThatIsNoTextMatchesNothing) {
  for (const base::PropertyList& value :
       {base::PropertyList(std::int64_t{1}), base::PropertyList(1.0), base::PropertyList(true),
        base::PropertyList(base::Bytes{'1'}), base::PropertyList()}) {
    bundle.embedHelperWithInfo(
        base::PropertyList(base::PropertyListDictionary{{"CFBundleShortVersionString", value}}));
    EXPECT_EQ(verdict("1"), false);
  }
}

TEST_F(XPCClientVersion, AnInfoDictionaryThatIsNoDictionaryMatchesNothing) {
  bundle.embedHelperWithInfo(base::PropertyList(std::string("1.2")));
  EXPECT_EQ(verdict("1.2"), false);
}

TEST_F(XPCClientVersion, TheEmbeddedVersionIsReadBeforeTheHelperIsAsked) {
  bundle.embedHelper("1.2");
  std::optional<bool> result;
  client().checkVersion([&](bool isSame) { result = isSame; }, manager);
  bundle.embedHelper("9.9");
  connection()->replyVersion("1.2");
  EXPECT_EQ(result, true);
}

TEST_F(XPCClientVersion, AMissingProxyCallsForAnUpdateAtOnce) {
  connector.setHasProxies(false);
  client().connection();
  forget();
  client().checkVersion([this](bool isSame) { journal.add(isSame ? "same" : "differs"); }, manager);
  EXPECT_EQ(happened(), (Entries{"content update", "differs"}));
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCClientVersion, AMissingProxyIsKnownToCallForAnUpdateBeforeThatIsPublished) {
  const auto watching = watchUpdateNeeded();
  connector.setHasProxies(false);
  client().checkVersion([](bool) {}, manager);
  EXPECT_EQ(watching->seen, Entries{"needed"});
}

TEST_F(XPCClientVersion, AMissingConnectionCallsForAnUpdateAtOnce) {
  connector.setConnects(false);
  std::optional<bool> result;
  client().checkVersion([&](bool isSame) { result = isSame; }, manager);
  EXPECT_EQ(result, false);
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCClientVersion, AMissingProxyIsReportedWithoutAManager) {
  connector.setConnects(false);
  std::optional<bool> result;
  client().checkVersion([&](bool isSame) { result = isSame; }, {});
  EXPECT_EQ(result, false);
  EXPECT_FALSE(manager->isUpdateNeeded());
}

}  // namespace
}  // namespace pallimo::helper_link
