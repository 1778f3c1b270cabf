// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/menu_bar.h"

#include <cstddef>

#include "base/fatal.h"

namespace pallimo::ui {

namespace {

void removeItem(MainMenu& mainMenu, std::size_t index) {
  if (index < mainMenu.size())
    mainMenu.erase(mainMenu.begin() + static_cast<std::ptrdiff_t>(index));
}

}  // namespace

MainMenu declaredMainMenu(const MenuBarActions& actions) {
  return {
      {"Pallimo",
       {{.title = "Settings...",
         .shortcut = ',',
         .action = actions.showSettings,
         .role = MenuBarRole::settings},
        {.title = "Quit Pallimo",
         .shortcut = 'Q',
         .action = actions.quit,
         .role = MenuBarRole::quit}}},
      {"File", {{.title = "Close", .shortcut = 'W', .action = actions.closeWindow}}},
      {"Edit", {}},
      {"View", {}},
      {"Logging", {{.title = "Log to file", .shortcut = 'L', .isChecked = actions.logToFile}}},
      {"Window", {{.title = "Minimize", .shortcut = 'M', .action = actions.minimizeWindow}}},
      {"Help", {{.title = "Pallimo Help", .action = actions.contactDeveloper}}},
  };
}

void removeUnusedMenus(MainMenu* mainMenu) {
  if (mainMenu == nullptr) base::fatal("The application has no main menu.");
  // The later one first, so that the other keeps its index.
  removeItem(*mainMenu, 3);
  removeItem(*mainMenu, 2);
}

MainMenu launchedMainMenu(const MenuBarActions& actions) {
  MainMenu mainMenu = declaredMainMenu(actions);
  removeUnusedMenus(&mainMenu);
  return mainMenu;
}

}  // namespace pallimo::ui
