// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <csignal>
#include <cstdio>

#include "helper_link/xpc_manager.h"
#include "helper_link_fixture.h"

namespace pallimo::helper_link {
namespace {

using test::Entries;

class XPCManagerInstall : public test::HelperLinkFixture {
 protected:
  XPCManagerInstall() : manager(XPCManager::create(managerServices())) {
    manager->setContentModelDelegate(content);
    manager->setMorebuttonModelDelegate(moreButton);
    manager->setPowerMetricsModelDelegate(engine);
    authorization.onCall = [this](const std::string& call) { journal.add(call); };
    installer.onCall = authorization.onCall;
  }

  static Entries asking() {
    return {"console: INSTALL HELPER", "createAuthorization", "bless com.ostrovane.powermetrics"};
  }
  static Entries applying(const std::string& isAuthorized) {
    return {"engine setAuthorized " + isAuthorized, "content update", "more button notifyChange"};
  }

  std::shared_ptr<XPCManager> manager;
};

TEST_F(XPCManagerInstall, AsksTheAdministratorInstallsAndProbes) {
  manager->installHelper();
  EXPECT_EQ(happened(), join({asking(), building(), {"-> isResponding"}}));
}

TEST_F(XPCManagerInstall, InstallsWithTheAuthorisationItObtained) {
  manager->installHelper();
  EXPECT_EQ(installer.blessedWith, authorization.attempt.token.get());
}

TEST_F(XPCManagerInstall, ChangesNothingBeforeTheProbeIsAnswered) {
  manager->setUpdateNeeded(true);
  manager->installHelper();
  EXPECT_FALSE(manager->isAuthorized());
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCManagerInstall, AProbeAnsweredYesAuthorisesAndDropsItsConnection) {
  manager->setUpdateNeeded(true);
  manager->installHelper();
  forget();
  connector.latest()->replyIsResponding(true);
  EXPECT_TRUE(manager->isAuthorized());
  EXPECT_FALSE(manager->isUpdateNeeded());
  EXPECT_EQ(happened(),
            join({{"content update", "notice XPCDidInstall"}, applying("true"), ending()}));
}

TEST_F(XPCManagerInstall, AProbeAnsweredNoOnlyDropsItsConnection) {
  manager->installHelper();
  forget();
  connector.latest()->replyIsResponding(false);
  EXPECT_FALSE(manager->isAuthorized());
  EXPECT_EQ(happened(), ending());
}

TEST_F(XPCManagerInstall, ARefusalIsAnnouncedAndTheProbeIsStillSent) {
  installer.blesses = false;
  manager->installHelper();
  EXPECT_EQ(happened(), join({asking(),
                              {"notice XPCInstallError"},
                              applying("false"),
                              building(),
                              {"-> isResponding"}}));
}

TEST_F(XPCManagerInstall, ARefusalWithdrawsTheAuthorisationAndEmptiesTheHistories) {
  notifications.post(base::notification::kXPCDidInstall);
  installer.blesses = false;
  manager->installHelper();
  EXPECT_FALSE(manager->isAuthorized());
  forget();
  mainQueue.run();
  EXPECT_EQ(happened(), (Entries{"notice ClearData"}));
}

TEST_F(XPCManagerInstall, ARefusalLeavesTheNeedOfAnUpdate) {
  manager->setUpdateNeeded(true);
  installer.blesses = false;
  manager->installHelper();
  EXPECT_TRUE(manager->isUpdateNeeded());
}

TEST_F(XPCManagerInstall, AnInstallationAfterARefusalAuthorises) {
  installer.blesses = false;
  manager->installHelper();
  connector.latest()->fireInvalidation();
  installer.blesses = true;
  manager->installHelper();
  connector.latest()->replyIsResponding(true);
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCManagerInstall, ASilentHelperChangesNothingHoweverLongItTakes) {
  manager->installHelper();
  forget();
  mainQueue.advance(std::chrono::hours(24));
  EXPECT_EQ(happened(), Entries{});
  EXPECT_FALSE(manager->isAuthorized());
}

TEST_F(XPCManagerInstall, TheProbeOfAHelperThatDiesIsNeverAnswered) {
  manager->installHelper();
  connector.latest()->interrupt();
  EXPECT_FALSE(connector.latest()->replyIsResponding(true));
  EXPECT_FALSE(manager->isAuthorized());
}

TEST_F(XPCManagerInstall, AHelperThatAnswersAuthorisesEvenAfterARefusal) {
  installer.blesses = false;
  manager->installHelper();
  connector.latest()->replyIsResponding(true);
  EXPECT_TRUE(manager->isAuthorized());
}

TEST_F(XPCManagerInstall, RemembersWhetherTheLastInstallationWasRefused) {
  EXPECT_FALSE(manager->isInstallationRefused());
  installer.blesses = false;
  manager->installHelper();
  EXPECT_TRUE(manager->isInstallationRefused());
  installer.blesses = true;
  manager->installHelper();
  EXPECT_FALSE(manager->isInstallationRefused());
}

TEST_F(XPCManagerInstall, AnInterruptionIsNoRefusal) {
  manager->installHelper();
  connector.latest()->interrupt();
  EXPECT_FALSE(manager->isInstallationRefused());
}

TEST_F(XPCManagerInstall, WithoutALinkTheProbeIsSkippedSilently) {
  connector.setConnects(false);
  manager->installHelper();
  EXPECT_EQ(happened(), join({asking(), {"connect com.ostrovane.powermetrics 4096"}}));
}

/// Lines that outlive the program they come from: a death test sees nothing else.
class StandardErrorLog final : public ports::SystemLog {
 public:
  void write(std::string_view line) override {
    std::fprintf(stderr, "log: %s\n", std::string(line).c_str());
  }
};

class XPCManagerInstallDeathTest : public XPCManagerInstall {
 protected:
  XPCManagerInstallDeathTest() {
    authorization.onCall = [](const std::string& call) {
      std::fprintf(stderr, "call: %s\n", call.c_str());
    };
    installer.onCall = authorization.onCall;
    XPCManager::Services services{{connector, bundle, notifications, standardError, console},
                                  mainQueue,
                                  backgroundQueue,
                                  authorization,
                                  installer,
                                  Processor::appleSilicon};
    manager = XPCManager::create(services);
  }

  /// `lines`: all that stands on standard error, as a regular expression.
  void expectFatalStop(const std::string& lines) {
    EXPECT_EXIT(manager->installHelper(), ::testing::KilledBySignal(SIGABRT), lines);
  }

  StandardErrorLog standardError;
};

TEST_F(XPCManagerInstallDeathTest, AFailedAuthorisationIsLoggedAndStopsTheProgram) {
  authorization.attempt = {-60005, nullptr};
  expectFatalStop(
      "^call: createAuthorization\n"
      "log: \\[PWMJBS\\]: Authorization failed with status code -60005\n"
      "Authorization not acquired\\.\n$");
}

TEST_F(XPCManagerInstallDeathTest, AStatusStopsTheProgramEvenWithAToken) {
  authorization.attempt.status = 17;
  expectFatalStop(
      "^call: createAuthorization\n"
      "log: \\[PWMJBS\\]: Authorization failed with status code 17\n"
      "Authorization not acquired\\.\n$");
}

TEST_F(XPCManagerInstallDeathTest, AMissingTokenStopsTheProgramWithoutAStatusLine) {
  authorization.attempt = {0, nullptr};
  expectFatalStop("^call: createAuthorization\nAuthorization not acquired\\.\n$");
}

}  // namespace
}  // namespace pallimo::helper_link
