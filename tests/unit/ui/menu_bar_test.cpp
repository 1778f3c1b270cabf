// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/menu_bar.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace pallimo::ui {
namespace {

using Texts = std::vector<std::string>;

/// Actions that note their names, and a log that can be switched.
struct MenuBarFixture {
  Texts done;
  bool isLogEnabled = false;

  MenuBarActions actions() {
    const auto note = [this](const char* name) { return [this, name] { done.push_back(name); }; };
    return {.showSettings = note("show settings"),
            .quit = note("quit"),
            .closeWindow = note("close window"),
            .minimizeWindow = note("minimize window"),
            .logToFile = {[this] { return isLogEnabled; }, [this](bool on) { isLogEnabled = on; }},
            .contactDeveloper = note("contact developer")};
  }
};

/// Of menus or items.
template <typename Titled>
Texts titlesOf(const std::vector<Titled>& list) {
  Texts titles;
  for (const Titled& titled : list) titles.push_back(titled.title);
  return titles;
}

const MenuBarMenu& menuNamed(const MainMenu& mainMenu, const std::string& title) {
  for (const MenuBarMenu& menu : mainMenu) {
    if (menu.title == title) return menu;
  }
  throw std::out_of_range(title);
}

/// A main menu of menus without items.
MainMenu menusNamed(const Texts& titles) {
  MainMenu mainMenu;
  for (const std::string& title : titles) mainMenu.push_back({title, {}});
  return mainMenu;
}

TEST(MainMenu, IsDeclaredAsTheStandardOneWithALoggingMenu) {
  MenuBarFixture f;
  EXPECT_EQ(titlesOf(declaredMainMenu(f.actions())),
            (Texts{"Pallimo", "File", "Edit", "View", "Logging", "Window", "Help"}));
}

TEST(MainMenu, LosesEditAndViewAtLaunch) {
  MenuBarFixture f;
  EXPECT_EQ(titlesOf(launchedMainMenu(f.actions())),
            (Texts{"Pallimo", "File", "Logging", "Window", "Help"}));
}

TEST(MainMenu, LosesWhatStoodAtTheIndicesTwoAndThree) {
  MainMenu mainMenu = menusNamed({"0", "1", "2", "3", "4", "5"});
  removeUnusedMenus(&mainMenu);
  EXPECT_EQ(titlesOf(mainMenu), (Texts{"0", "1", "4", "5"}));
}

TEST(MainMenu, AShortOneLosesWhatItHasThere) {
  MainMenu three = menusNamed({"0", "1", "2"});
  removeUnusedMenus(&three);
  EXPECT_EQ(titlesOf(three), (Texts{"0", "1"}));
  MainMenu two = menusNamed({"0", "1"});
  removeUnusedMenus(&two);
  EXPECT_EQ(titlesOf(two), (Texts{"0", "1"}));
}

TEST(MainMenuDeathTest, NoneAtAllStopsTheProgram) {
  EXPECT_DEATH(removeUnusedMenus(nullptr), "^The application has no main menu\\.\n$");
}

TEST(MainMenu, HasNoItemForNewWindows) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  EXPECT_EQ(titlesOf(menuNamed(mainMenu, "File").items), Texts{"Close"});
  for (const MenuBarMenu& menu : mainMenu) {
    for (const MenuBarItem& item : menu.items) EXPECT_NE(item.shortcut, 'N') << item.title;
  }
}

TEST(MainMenu, HelpIsOneItemThatWritesToTheSupport) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  const auto& items = menuNamed(mainMenu, "Help").items;
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].title, "Pallimo Help");
  items[0].action();
  EXPECT_EQ(f.done, Texts{"contact developer"});
}

TEST(MainMenu, LoggingIsOneSwitchThatTheCommandKeyAndLChoose) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  const auto& items = menuNamed(mainMenu, "Logging").items;
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].title, "Log to file");
  EXPECT_EQ(items[0].shortcut, 'L');
  EXPECT_EQ(items[0].action, nullptr);
  ASSERT_TRUE(items[0].isChecked.has_value());
}

TEST(MainMenu, TheSwitchShowsAndChangesTheLogsState) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  const auto& binding = *menuNamed(mainMenu, "Logging").items[0].isChecked;
  EXPECT_FALSE(binding.isOn());
  binding.setOn(true);
  EXPECT_TRUE(f.isLogEnabled);
  EXPECT_TRUE(binding.isOn());
}

TEST(MainMenu, TheApplicationsOwnMenuOpensTheSettingsAndQuits) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  const auto& items = mainMenu.front().items;
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(items[0].title, "Settings...");
  EXPECT_EQ(items[0].shortcut, ',');
  EXPECT_EQ(items[0].role, MenuBarRole::settings);
  EXPECT_EQ(items[1].title, "Quit Pallimo");
  EXPECT_EQ(items[1].shortcut, 'Q');
  EXPECT_EQ(items[1].role, MenuBarRole::quit);
  items[0].action();
  items[1].action();
  EXPECT_EQ(f.done, (Texts{"show settings", "quit"}));
}

TEST(MainMenu, FileClosesAndWindowMinimizes) {
  MenuBarFixture f;
  const MainMenu mainMenu = launchedMainMenu(f.actions());
  menuNamed(mainMenu, "File").items.at(0).action();
  menuNamed(mainMenu, "Window").items.at(0).action();
  EXPECT_EQ(f.done, (Texts{"close window", "minimize window"}));
}

}  // namespace
}  // namespace pallimo::ui
