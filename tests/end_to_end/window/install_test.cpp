// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QLabel>
#include <fstream>
#include <system_error>

#include "end_to_end/window/window_app.h"
#include "ui/widgets/main/main_title_widget.h"

namespace pallimo::end_to_end {
namespace {

/// What stands in the window in the place of the panels, and how a click on its button goes on.
class InstallScreen : public WindowApp {
 protected:
  QStringList texts() const {
    QStringList found;
    for (const auto* label : window().findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) found.append(label->text());
    }
    return found;
  }
  bool hasHeader() const { return window().moreButton().isVisible(); }
  static bool isShown(const widgets::PanelWidget& panel) { return panel.isVisible(); }

  /// Starts the app, whose helper is then another version's.
  void startOutdated() {
    // An update leaves the old helper a second to go, which passes faster, too.
    options.speed = 3;
    installHelper(kOlderHelper);
    older_ = fs::last_write_time(folder.installedHelper());
    startApp();
    ASSERT_TRUE(soon([this] { return buttonText() == "Update Helper"; }));
  }
  /// By its time alone: to read a whole helper would hold up the app.
  bool isReplaced() const {
    std::error_code isGone;
    const auto written = fs::last_write_time(folder.installedHelper(), isGone);
    return !isGone && written != older_;
  }
  /// The update installs the new helper by itself. The old one's end may then take the new one's
  /// first connection along, and only then one click on the install screen leads on.
  bool becomesLiveAfterUpdate() const {
    if (!soon([this] { return isReplaced(); })) return false;
    bool isAnswerLost = false;
    return soon([&] {
      if (!isAnswerLost && buttonText() == "Install Helper" &&
          !general().xpcmanager()->client().isProbeOpen()) {
        isAnswerLost = true;
        click(*button());
      }
      return window().liveContent().isVisible();
    });
  }

  /// The administrator declines.
  void refuseInstallations() const {
    std::ofstream(folder.simulationFile())
        << R"({"format": 1, "machine": "MacBook Pro M2 Pro", "faults": {"blessRefused": true}})";
  }

  base::Subscription countRefusals(std::atomic<int>& refusals) const {
    return platform().notifications.observe(base::notification::kXPCInstallError,
                                            [&refusals] { ++refusals; });
  }

  /// A Mac with another processor.
  void simulateAnIntelMac() {
    const fs::path mac = home / "mac";
    fs::create_directory(mac);
    std::ofstream(mac / "machine.json")
        << R"({"format": 1, "name": "Test Mac", "sysctl": {"hw.cputype": 7, "hw.model": "MacPro7,1",)"
        << R"( "machdep.cpu.brand_string": "Intel"}, "steps": [{"powermetrics": null}]})";
    options.machine = mac;
  }

  fs::file_time_type older_;
};

TEST_F(InstallScreen, LeadsToLivePanelsByOneClick) {
  startApp();
  EXPECT_EQ(
      texts(),
      QStringList(
          {"Welcome", "\nBefore to start you need to install the Pallimo Powermetrics Helper\n"}));
  EXPECT_EQ(buttonText(), "Install Helper");
  EXPECT_TRUE(hasHeader());
  click(*button());
  ASSERT_TRUE(becomesLive());
  EXPECT_EQ(button(), nullptr);
  EXPECT_EQ(contents(folder.installedHelper()), contents(kEmbeddedHelper));
  ASSERT_TRUE(samples(3));
  ASSERT_EQ(window().liveContent().panels().size(), 4u);
  for (const auto* panel : window().liveContent().panels()) EXPECT_TRUE(isShown(*panel));
  EXPECT_TRUE(soon([this] { return panel(kPower).graph.datas.at(0).data.size() >= 3; }));
}

TEST_F(InstallScreen, LeadsToLivePanelsByKeysAlone) {
  startApp();
  press(Qt::Key_Tab);  // the more button
  press(Qt::Key_Tab);
  ASSERT_EQ(QApplication::focusWidget(), button());
  press(Qt::Key_Return);
  EXPECT_TRUE(becomesLive());
}

TEST_F(InstallScreen, GivesWayToThePanelsWithoutAClickWhereTheHelperAnswers) {
  installHelper();
  startApp();
  EXPECT_TRUE(becomesLive());
}

TEST_F(InstallScreen, StaysWhereTheInstallationIsRefused) {
  refuseInstallations();
  startApp();
  std::atomic<int> refusals = 0;
  const auto subscription = countRefusals(refusals);
  for (int presses = 1; presses <= 2; ++presses) {
    click(*button());
    ASSERT_TRUE(soon([&] { return refusals == presses; }));
    widgets::settle();
    EXPECT_EQ(buttonText(), "Install Helper");
    EXPECT_FALSE(fs::exists(folder.installedHelper()));
  }
}

TEST_F(InstallScreen, UpdateHidesItsButtonAtOnce) {
  startOutdated();
  EXPECT_EQ(texts(), QStringList("\nThe Pallimo Powermetrics Helper need being updated\n"));
  EXPECT_TRUE(hasHeader());
  const Process older = helper();
  click(*button());
  EXPECT_EQ(button(), nullptr);
  EXPECT_EQ(texts(), QStringList("\nThe Pallimo Powermetrics Helper need being updated\n"));
  ASSERT_TRUE(becomesLiveAfterUpdate());
  EXPECT_TRUE(samples(3));
  EXPECT_TRUE(older.ends());
  EXPECT_EQ(contents(folder.installedHelper()), contents(kEmbeddedHelper));
}

TEST_F(InstallScreen, UpdateButtonStaysHiddenAsLongAsTheUpdateLasts) {
  startOutdated();
  click(*button());
  int looks = 0;
  ASSERT_TRUE(soon([&] {
    if (texts() != QStringList("\nThe Pallimo Powermetrics Helper need being updated\n"))
      return true;
    EXPECT_EQ(button(), nullptr);
    ++looks;
    return false;
  }));
  EXPECT_GT(looks, 0);
}

TEST_F(InstallScreen, UpdateButtonStaysHiddenWhenTheUpdateIsRefused) {
  refuseInstallations();
  startOutdated();
  std::atomic<int> refusals = 0;
  const auto subscription = countRefusals(refusals);
  click(*button());
  const auto isOffered = [this] { return buttonText() == "Update Helper"; };
  ASSERT_TRUE(soon([&] { return refusals > 0 || isOffered(); }));
  widgets::settle();
  EXPECT_FALSE(isOffered());
  ASSERT_TRUE(becomesInstallScreen());
}

TEST_F(InstallScreen, IsARefusalOnAnotherProcessor) {
  installHelper();
  simulateAnIntelMac();
  startApp();
  EXPECT_EQ(texts(), QStringList("This app is only for Apple Silicon Cores.\nIt is not working on "
                                 "Intel Cores"));
  EXPECT_FALSE(hasHeader());
  EXPECT_EQ(button(), nullptr);
  EXPECT_FALSE(helperIfThere());
  endApp();
  EXPECT_FALSE(helperIfThere());
}

TEST_F(InstallScreen, ComesBackWhenTheHelperIsKilledAndInstallsAgain) {
  startLive();
  const Process first = helper();
  first.send(SIGKILL);
  ASSERT_TRUE(becomesInstallScreen());
  EXPECT_FALSE(window().liveContent().isVisible());
  EXPECT_EQ(general().modelPower()->snapshot()->historicCPU.newest.size(), 0u);
  click(*button());
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(samples(3));
  EXPECT_NE(helper().number(), first.number());
}

TEST_F(InstallScreen, ComesBackWhenTheHelperIsKilledBehindAHiddenWindow) {
  startLive();
  window().hide();
  helper().send(SIGKILL);
  ASSERT_TRUE(soon([this] { return !general().xpcmanager()->isAuthorized(); }));
  window().show();
  EXPECT_TRUE(becomesInstallScreen());
}

}  // namespace
}  // namespace pallimo::end_to_end
