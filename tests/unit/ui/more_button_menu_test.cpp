// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/more_button_menu.h"

#include <gtest/gtest.h>

#include <set>

#include "unit/ui/counting_random.h"

namespace pallimo::ui {
namespace {

using Texts = std::vector<std::string>;

/// Actions that note their names, and a log that can be switched.
struct MenuFixture {
  Texts done;
  bool isLogEnabled = false;
  CountingRandom random;

  MoreButtonActions actions() {
    const auto note = [this](const char* name) { return [this, name] { done.push_back(name); }; };
    return {.checkForUpdates = note("check for updates"),
            .uninstallHelper = note("uninstall helper"),
            .logToFile = {[this] { return isLogEnabled; }, [this](bool on) { isLogEnabled = on; }},
            .showSettings = note("show settings"),
            .openStorePage = note("open store page"),
            .openSocialPage = note("open social page"),
            .contactDeveloper = note("contact developer"),
            .quit = note("quit")};
  }
  std::vector<MenuItem> menu(bool isAuthorized = true) {
    return moreButtonMenu(actions(), isAuthorized, random);
  }
};

TEST(MoreButtonMenu, HasTwelveRowsInOrder) {
  MenuFixture f;
  Texts titles;
  for (const MenuItem& item : f.menu()) titles.push_back(item.title);
  EXPECT_EQ(titles, (Texts{"Check for Update", "Uninstall Helper", "-", "Log to file",
                           "Settings...", "-", "Try Corvix Stats...", "-", "Follow on X",
                           "Contact Developer", "-", "Quit Pallimo"}));
}

TEST(MoreButtonMenu, DashesAreSeparatorsLogToFileIsASwitchAllElseAreCommands) {
  using enum MenuItemKind;
  MenuFixture f;
  std::vector<MenuItemKind> kinds;
  for (const MenuItem& item : f.menu()) kinds.push_back(kindOf(item));
  EXPECT_EQ(kinds, (std::vector{command, command, separator, toggle, command, separator, command,
                                separator, command, command, separator, command}));
}

TEST(MoreButtonMenu, CommandsDoWhatTheySay) {
  MenuFixture f;
  for (const MenuItem& item : f.menu()) {
    if (kindOf(item) == MenuItemKind::command) item.action();
  }
  EXPECT_EQ(f.done, (Texts{"check for updates", "uninstall helper", "show settings",
                           "open store page", "open social page", "contact developer", "quit"}));
}

TEST(MoreButtonMenu, SeparatorsAndTheSwitchHaveNoAction) {
  MenuFixture f;
  for (const MenuItem& item : f.menu()) {
    EXPECT_EQ(item.action != nullptr, kindOf(item) == MenuItemKind::command) << item.title;
  }
}

TEST(MoreButtonMenu, OnlyTheSwitchCarriesTheMarker) {
  MenuFixture f;
  for (const MenuItem& item : f.menu()) {
    EXPECT_EQ(item.isChecked.has_value(), item.title == "Log to file") << item.title;
  }
}

TEST(MoreButtonMenu, TheSwitchShowsAndChangesTheLogsState) {
  MenuFixture f;
  const MenuItem row = f.menu()[3];
  EXPECT_FALSE(row.isChecked->isOn());
  row.isChecked->setOn(true);
  EXPECT_TRUE(f.isLogEnabled);
  EXPECT_TRUE(row.isChecked->isOn());
  row.isChecked->setOn(false);
  EXPECT_FALSE(row.isChecked->isOn());
}

TEST(MoreButtonMenu, OnlyTheRemovalOfAHelperThatIsNotAuthorizedIsDisabled) {
  MenuFixture f;
  for (const MenuItem& item : f.menu(false)) {
    EXPECT_EQ(item.isDisabled, item.title == "Uninstall Helper") << item.title;
  }
  for (const MenuItem& item : f.menu(true)) EXPECT_FALSE(item.isDisabled) << item.title;
}

TEST(MoreButtonMenu, EveryRowHasAnIdOfItsOwnAtEveryBuilding) {
  MenuFixture f;
  std::set<std::string> ids;
  for (int i = 0; i < 2; ++i) {
    for (const MenuItem& item : f.menu()) {
      EXPECT_EQ(item.id.size(), 36u);
      ids.insert(item.id);
    }
  }
  EXPECT_EQ(ids.size(), 24u);
}

TEST(MenuItemKind, TheTitleDecidesBeforeTheMarker) {
  const SwitchBinding binding = {[] { return true; }, [](bool) {}};
  EXPECT_EQ(kindOf({.isChecked = binding, .title = "-"}), MenuItemKind::separator);
  EXPECT_EQ(kindOf({.isChecked = binding, .title = "--"}), MenuItemKind::toggle);
  EXPECT_EQ(kindOf({.title = "--"}), MenuItemKind::command);
}

}  // namespace
}  // namespace pallimo::ui
