// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QTimer>

#include "end_to_end/window/window_app.h"
#include "ui/addresses.h"

namespace pallimo::end_to_end {
namespace {

/// The more button's menu, row by row.
class MoreMenu : public WindowApp {
 protected:
  ~MoreMenu() override { closeMenu(); }

  static QStringList titlesOf(const QMenu& menu) {
    QStringList titles;
    for (const QAction* action : menu.actions()) {
      titles.append(action->isSeparator() ? "-" : action->text());
    }
    return titles;
  }
  QAction* row(int number) const { return window().moreButton().menu()->actions().at(number - 1); }
  static void closeMenu() {
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    widgets::settle();
  }
  /// What was begun on the background queue is done, and what it queued on the main queue.
  void letQueuesRun() const {
    auto isDone = std::make_shared<bool>(false);
    platform().backgroundQueue.async(
        [&main = platform().mainQueue, isDone] { main.async([isDone] { *isDone = true; }); });
    ASSERT_TRUE(soon([isDone] { return *isDone; }));
  }
  bool isUninstallPossible() const {
    openMoreMenu();
    const bool isPossible = row(2)->isEnabled();
    closeMenu();
    return isPossible;
  }
};

TEST_F(MoreMenu, HasTwelveRows) {
  startLive();
  EXPECT_EQ(titlesOf(*openMoreMenu()),
            QStringList({"Check for Update", "Uninstall Helper", "-", "Log to file", "Settings...",
                         "-", "Try Corvix Stats...", "-", "Follow on X", "Contact Developer", "-",
                         "Quit Pallimo"}));
  for (int number = 1; number <= 12; ++number) {
    EXPECT_TRUE(row(number)->isEnabled()) << number;
    EXPECT_EQ(row(number)->isCheckable(), number == 4) << number;
  }
}

TEST_F(MoreMenu, CheckForUpdateAsksTheUpdater) {
  testing::internal::CaptureStdout();  // the app's console
  startApp();
  choose("Check for Update");
  endApp();
  EXPECT_NE(testing::internal::GetCapturedStdout().find(
                "error updates are only available in the macOS app\n"),
            std::string::npos);
}

TEST_F(MoreMenu, UninstallHelperIsGreyUntilAHelperIsInstalled) {
  startApp();
  EXPECT_FALSE(isUninstallPossible());
  click(*button());
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(isUninstallPossible());
}

TEST_F(MoreMenu, UninstallHelperTurnsUsableInAMenuThatIsOpen) {
  startApp();
  openMoreMenu();
  EXPECT_FALSE(row(2)->isEnabled());
  general().xpcmanager()->installHelper();
  EXPECT_TRUE(soon([this] { return row(2)->isEnabled(); }));
}

TEST_F(MoreMenu, UninstallHelperTurnsGreyInAMenuThatIsOpen) {
  startLive();
  openMoreMenu();
  EXPECT_TRUE(row(2)->isEnabled());
  helper().send(SIGKILL);
  EXPECT_TRUE(soon([this] { return !row(2)->isEnabled(); }));
}

TEST_F(MoreMenu, UninstallHelperRemovesIt) {
  startLive();
  const Process running = helper();
  choose("Uninstall Helper");
  ASSERT_TRUE(becomesInstallScreen());
  EXPECT_TRUE(running.ends());
  EXPECT_FALSE(fs::exists(folder.installedHelper()));
  EXPECT_FALSE(isUninstallPossible());
  click(*button());
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(samples(3));
}

TEST_F(MoreMenu, UninstallHelperDoesNothingWhileItIsGrey) {
  installHelper(kOlderHelper);  // one that runs and must not be used
  startApp();
  ASSERT_TRUE(soon([this] { return buttonText() == "Update Helper"; }));
  const Process running = helper();
  choose("Uninstall Helper");
  EXPECT_NE(window().moreButton().menu(), nullptr);  // no row was chosen
  letQueuesRun();
  EXPECT_FALSE(general().xpcmanager()->isRequestedToUninstall());
  EXPECT_TRUE(fs::exists(folder.installedHelper()));
  EXPECT_EQ(helper().number(), running.number());
}

TEST_F(MoreMenu, ClosesAtASecondClickOnTheButton) {
  startApp();
  EXPECT_NE(openMoreMenu(), nullptr);
  click(window().moreButton());
  widgets::settle();
  EXPECT_EQ(window().moreButton().menu(), nullptr);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(MoreMenu, LogToFileFlipsTheLogAndShowsItsState) {
  startLive();
  choose("Log to file");
  EXPECT_TRUE(general().logfileModel()->isLogEnabled());
  openMoreMenu();
  EXPECT_TRUE(row(4)->isChecked());
  general().logfileModel()->setLogEnabled(false);  // somebody else
  EXPECT_TRUE(soon([this] { return !row(4)->isChecked(); }));
}

TEST_F(MoreMenu, SettingsGoThroughTheActionOfTheMenuBar) {
  startApp();
  int chosen = 0;
  QObject::connect(window().mainMenuBar().action(ui::MenuBarRole::settings), &QAction::triggered,
                   &window(), [&chosen] { ++chosen; });
  choose("Settings...");
  EXPECT_EQ(chosen, 1);
  EXPECT_TRUE(settings().isVisible());
  EXPECT_TRUE(QTest::qWaitForWindowActive(&settings()));
}

TEST_F(MoreMenu, SettingsAreOneWindowHoweverOftenTheyAreAskedFor) {
  startApp();
  choose("Settings...");
  ASSERT_TRUE(QTest::qWaitForWindowActive(&settings()));
  press(Qt::Key_Comma, Qt::ControlModifier);
  widgets::settle();
  int windows = 0;
  for (const QWidget* shown : QApplication::topLevelWidgets())
    windows += shown->isVisible() ? 1 : 0;
  EXPECT_EQ(windows, 2);
}

TEST_F(MoreMenu, LinksGoToTheDesktop) {
  startApp();
  choose("Try Corvix Stats...");
  choose("Follow on X");
  choose("Contact Developer");
  EXPECT_EQ(openedLinks(),
            QStringList({ui::kStoreAddress, ui::kSocialAddress, ui::kSupportAddress}));
}

TEST_F(MoreMenu, QuitEndsTheProgramWithoutAFault) {
  startLive();
  QTimer::singleShot(0, &window(), [this] { choose("Quit Pallimo"); });
  EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(MoreMenu, WorksByKeysAlone) {
  startApp();
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  ASSERT_NE(window().moreButton().menu(), nullptr);
  // "Uninstall Helper" can't be chosen, and the keys pass it by, or stop there to no effect.
  QMenu& menu = *window().moreButton().menu();
  for (int keys = 0; keys < 12 && menu.activeAction() != row(5); ++keys) {
    QTest::keyClick(&menu, Qt::Key_Down);
  }
  ASSERT_EQ(menu.activeAction(), row(5));
  QTest::keyClick(&menu, Qt::Key_Return);
  EXPECT_TRUE(soon([this] { return settings().isVisible(); }));
}

TEST_F(MoreMenu, MenuBarOpensByKeyAndTellsTheSupport) {
  startApp();
  press(Qt::Key_F10);
  auto* bar = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(titlesOf(*bar), QStringList({"Pallimo", "File", "Logging", "Window", "Help"}));
  QTest::keyClick(bar, Qt::Key_Up);  // from the end: "Help"
  QTest::keyClick(bar, Qt::Key_Right);
  QWidget* const help = QApplication::activePopupWidget();
  ASSERT_NE(help, bar);
  EXPECT_EQ(titlesOf(*qobject_cast<QMenu*>(help)), QStringList("Pallimo Help"));
  QTest::keyClick(help, Qt::Key_Return);
  EXPECT_EQ(openedLinks(), QStringList(ui::kSupportAddress));
}

}  // namespace
}  // namespace pallimo::end_to_end
