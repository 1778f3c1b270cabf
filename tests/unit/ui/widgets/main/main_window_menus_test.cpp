// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMenuBar>

#include "ui/widgets/main/main_window.h"
#include "unit/ui/widgets/main/main_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

QStringList titlesOf(const QList<QAction*>& actions) {
  QStringList titles;
  for (const QAction* action : actions) {
    titles.append(action->isSeparator() ? "-" : action->text());
  }
  return titles;
}

class MainWindowMenus : public MainWindowFixture {
 protected:
  /// Chooses the row of the more button's menu with that title, by mouse.
  void choose(const QString& title) {
    QMenu* menu = openMoreMenu();
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                      menu->actionGeometry(actionNamed(menu->actions(), title)).center());
    settle();
  }

  QAction* menuBarAction(const QString& title) {
    for (QMenu* menu : window().mainMenuBar().menus()) {
      if (QAction* action = actionNamed(menu->actions(), title)) return action;
    }
    return nullptr;
  }

  /// Brings the log's switch into that state without the window.
  void switchLog(bool isOn) {
    isLogEnabled_ = isOn;
    window().contentChanged();
    settle();
  }

  void closePopup() {
    QApplication::activePopupWidget()->close();
    settle();
  }
};

TEST_F(MainWindowMenus, MoreButtonOpensTheTwelveRows) {
  shown();
  EXPECT_EQ(titlesOf(openMoreMenu()->actions()),
            QStringList({"Check for Update", "Uninstall Helper", "-", "Log to file", "Settings...",
                         "-", "Try Corvix Stats...", "-", "Follow on X", "Contact Developer", "-",
                         "Quit Pallimo"}));
  closePopup();
}

TEST_F(MainWindowMenus, EachRowOfTheMoreButtonDoesItsWork) {
  shown();
  for (const char* title :
       {"Check for Update", "Uninstall Helper", "Settings...", "Try Corvix Stats...", "Follow on X",
        "Contact Developer", "Quit Pallimo"}) {
    choose(title);
  }
  EXPECT_EQ(done_, (std::vector<std::string>{"check", "uninstall", "settings", "store", "social",
                                             "contact", "quit"}));
}

TEST_F(MainWindowMenus, UninstallHelperIsGreyWithoutAnAuthorisedHelper) {
  isHelperAuthorized_ = false;
  shown();
  choose("Uninstall Helper");
  EXPECT_EQ(done_, std::vector<std::string>());
  closePopup();
}

TEST_F(MainWindowMenus, UninstallHelperFollowsTheHelperWhileTheMenuIsOpen) {
  isHelperAuthorized_ = false;
  shown();
  QAction* uninstall = actionNamed(openMoreMenu()->actions(), "Uninstall Helper");
  EXPECT_FALSE(uninstall->isEnabled());
  isHelperAuthorized_ = true;
  window().contentChanged();
  settle();
  EXPECT_TRUE(uninstall->isEnabled());
  closePopup();
}

TEST_F(MainWindowMenus, LogToFileFlipsTheLogAndShowsItsState) {
  shown();
  choose("Log to file");
  EXPECT_TRUE(isLogEnabled_);
  EXPECT_TRUE(actionNamed(openMoreMenu()->actions(), "Log to file")->isChecked());
  closePopup();
  choose("Log to file");
  EXPECT_FALSE(isLogEnabled_);
}

TEST_F(MainWindowMenus, SettingsOfTheMoreButtonGoThroughTheMenuBarsItem) {
  shown();
  int chosen = 0;
  QObject::connect(window().mainMenuBar().action(MenuBarRole::settings), &QAction::triggered,
                   &window(), [&chosen] { ++chosen; });
  choose("Settings...");
  EXPECT_EQ(chosen, 1);
  EXPECT_EQ(done_, std::vector<std::string>{"settings"});
}

TEST_F(MainWindowMenus, KeyboardOpensTheMoreButtonsMenuAndChooses) {
  shown();
  QTest::keyClick(&window(), Qt::Key_Tab);
  ASSERT_EQ(QApplication::focusWidget(), &window().moreButton());
  QTest::keyClick(&window().moreButton(), Qt::Key_Space);
  QMenu* menu = window().moreButton().menu();
  ASSERT_NE(menu, nullptr);
  menu->setActiveAction(actionNamed(menu->actions(), "Follow on X"));
  QTest::keyClick(menu, Qt::Key_Return);
  settle();
  EXPECT_EQ(done_, std::vector<std::string>{"social"});
}

TEST_F(MainWindowMenus, MenuBarHasWhatTheLaunchLeaves) {
  QStringList titles;
  for (const QMenu* menu : window().mainMenuBar().menus()) titles.append(menu->title());
  EXPECT_EQ(titles, QStringList({"Pallimo", "File", "Logging", "Window", "Help"}));
}

TEST_F(MainWindowMenus, MenuBarsItemsDoTheirWork) {
  shown();
  menuBarAction("Settings...")->trigger();
  menuBarAction("Pallimo Help")->trigger();
  menuBarAction("Quit Pallimo")->trigger();
  EXPECT_EQ(done_, (std::vector<std::string>{"settings", "contact", "quit"}));
}

TEST_F(MainWindowMenus, MenuBarTellsTheSystemWhatItsItemsAre) {
  EXPECT_EQ(menuBarAction("Settings...")->menuRole(), QAction::PreferencesRole);
  EXPECT_EQ(menuBarAction("Quit Pallimo")->menuRole(), QAction::QuitRole);
  EXPECT_EQ(menuBarAction("Log to file")->menuRole(), QAction::NoRole);
}

TEST_F(MainWindowMenus, MenuBarHasLostWhatStoodAtTheIndicesTwoAndThree) {
  QStringList left;
  for (const MenuBarMenu& menu : declaredMainMenu({})) left.append(menu.title.c_str());
  left.removeAt(3);
  left.removeAt(2);
  EXPECT_EQ(titlesOf(window().findChild<QMenuBar*>()->actions()), left);
}

TEST_F(MainWindowMenus, MenuBarTakesNoRoomInTheWindow) {
  shown();
  EXPECT_FALSE(window().findChild<QMenuBar*>()->isVisible());
}

TEST_F(MainWindowMenus, LogToFileOfTheMenuBarIsBoundBothWays) {
  shown();
  QAction* log = menuBarAction("Log to file");
  EXPECT_FALSE(log->isChecked());
  log->trigger();
  EXPECT_TRUE(isLogEnabled_);
  EXPECT_TRUE(log->isChecked());
  switchLog(false);
  EXPECT_FALSE(log->isChecked());
}

TEST_F(MainWindowMenus, LogToFileOfTheMenuBarFollowsAlsoWhileTheWindowIsHidden) {
  shown();
  window().hide();
  switchLog(true);
  EXPECT_TRUE(menuBarAction("Log to file")->isChecked());
}

TEST_F(MainWindowMenus, KeysChooseTheMenuBarsItems) {
  shown();
  QTest::keyClick(&window(), Qt::Key_L, Qt::ControlModifier);
  EXPECT_TRUE(isLogEnabled_);
  QTest::keyClick(&window(), Qt::Key_L, Qt::ControlModifier);
  EXPECT_FALSE(isLogEnabled_);
  QTest::keyClick(&window(), Qt::Key_Comma, Qt::ControlModifier);
  QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(done_, (std::vector<std::string>{"settings", "quit"}));
}

TEST_F(MainWindowMenus, KeysMinimiseAndCloseTheWindow) {
  shown();
  QTest::keyClick(&window(), Qt::Key_M, Qt::ControlModifier);
  EXPECT_TRUE(window().isMinimized());
  window().showNormal();
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  QTest::keyClick(&window(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window().isVisible());
}

TEST_F(MainWindowMenus, TellsWhenTheWindowIsClosedAndOnlyThen) {
  shown();
  window().showMinimized();
  window().showNormal();
  settle();
  EXPECT_EQ(closed_, 0);
  window().close();
  EXPECT_EQ(closed_, 1);
}

TEST_F(MainWindowMenus, KeysWorkBesideTheRefusal) {
  shownWith(refusalContent());
  QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(done_, std::vector<std::string>{"quit"});
}

TEST_F(MainWindowMenus, KeysWorkInEveryWindowThatAsksForThem) {
  shown();
  QWidget other;
  window().mainMenuBar().addKeysTo(other);
  showAndWait(other);
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  QTest::keyClick(&other, Qt::Key_L, Qt::ControlModifier);
  EXPECT_TRUE(isLogEnabled_);
  QTest::keyClick(&other, Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(other.isVisible());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(MainWindowMenus, MenuBarsMenusOpenByKey) {
  shown();
  QTest::keyClick(&window(), Qt::Key_F10);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(titlesOf(menu->actions()),
            QStringList({"Pallimo", "File", "Logging", "Window", "Help"}));
  closePopup();
}

TEST_F(MainWindowMenus, MenuBarsMenusLookLikeTheMoreButtons) {
  shown();
  QTest::keyClick(&window(), Qt::Key_F10);
  auto* bar = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(bar, nullptr);
  const QString look = bar->styleSheet();
  for (const QMenu* menu : window().mainMenuBar().menus()) EXPECT_EQ(menu->styleSheet(), look);
  closePopup();
  EXPECT_EQ(openMoreMenu()->styleSheet(), look);
  closePopup();
}

TEST_F(MainWindowMenus, MenuBarsMenusFollowTheSchemeWhileTheyAreOpen) {
  isLogEnabled_ = true;
  shown();
  window().setColorScheme(ColorScheme::light);
  QTest::keyClick(&window(), Qt::Key_F10);
  auto* bar = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(bar, nullptr);
  const QString light = bar->styleSheet();
  const auto tick = [this] { return menuBarAction("Log to file")->icon().pixmap(12).toImage(); };
  const QImage lightTick = tick();
  window().setColorScheme(ColorScheme::dark);
  EXPECT_NE(bar->styleSheet(), light);
  EXPECT_EQ(window().mainMenuBar().menus()[2]->styleSheet(), bar->styleSheet());
  EXPECT_NE(tick(), lightTick);
  closePopup();
}

TEST_F(MainWindowMenus, MenuBarsOpenMenuShowsTheLogsSwitchWithATick) {
  shown();
  QTest::keyClick(&window(), Qt::Key_F10);
  QAction* log = menuBarAction("Log to file");
  EXPECT_TRUE(log->icon().isNull());
  switchLog(true);
  EXPECT_FALSE(log->icon().isNull());
  switchLog(false);
  EXPECT_TRUE(log->icon().isNull());
  closePopup();
}

TEST_F(MainWindowMenus, TwoChangesOfATurnLeaveTheOpenMenuAtTheLastState) {
  shown();
  QAction* uninstall = actionNamed(openMoreMenu()->actions(), "Uninstall Helper");
  isHelperAuthorized_ = false;
  window().contentChanged();
  isHelperAuthorized_ = true;
  window().contentChanged();
  settle();
  EXPECT_TRUE(uninstall->isEnabled());
  for (const bool isAuthorized : {true, false}) {
    isHelperAuthorized_ = isAuthorized;
    window().contentChanged();
  }
  settle();
  EXPECT_FALSE(uninstall->isEnabled());
  closePopup();
}

TEST_F(MainWindowMenus, MenuBarBelongsToTheWindowOrToAllOfThem) {
  QWidget owner;
  const MainMenuBar own({{"File", {}}}, owner, false);
  EXPECT_EQ(owner.findChildren<QMenuBar*>().size(), 1);
  const MainMenuBar shared({{"File", {}}}, owner, true);
  EXPECT_EQ(owner.findChildren<QMenuBar*>().size(), 1);
  EXPECT_EQ(shared.menus().size(), 1u);
}

TEST_F(MainWindowMenus, MenuBarsMenusOpenAsTheHeadersContextMenu) {
  shown();
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(50, 20),
                          window().mapToGlobal(QPoint(50, 20)));
  QApplication::sendEvent(window().childAt(50, 20), &event);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(titlesOf(menu->actions())[0], "Pallimo");
  closePopup();
}

TEST_F(MainWindowMenus, ASwitchThatIsRefusedStaysAsItIs) {
  isLogEnabled_ = false;
  QWidget owner;
  MainMenuBar bar(
      {{"Logging",
        {{.title = "Log to file", .isChecked = SwitchBinding{[] { return false; }, [](bool) {}}}}}},
      owner, false);
  QAction* log = bar.menus()[0]->actions()[0];
  log->trigger();
  EXPECT_FALSE(log->isChecked());
}

}  // namespace
}  // namespace pallimo::ui::widgets
