// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/switch_binding.h"

namespace pallimo::ui {

/// What a menu bar's item is to the system, which may keep a place of its own for it.
enum class MenuBarRole { plain, settings, quit };

/// An item of the menu bar: a command, or a switch if it has a binding.
struct MenuBarItem {
  std::string title;
  /// The key that chooses the item together with the platform's command key: Command on a Mac, Ctrl
  /// elsewhere. 0: none.
  char shortcut = 0;
  std::function<void()> action = nullptr;  ///< none for a switch
  std::optional<SwitchBinding> isChecked = std::nullopt;
  MenuBarRole role = MenuBarRole::plain;
};

struct MenuBarMenu {
  std::string title;
  std::vector<MenuBarItem> items;
};

/// The application's main menu, from left to right.
using MainMenu = std::vector<MenuBarMenu>;

/// What the menu bar does. All are set; called on the main thread, when an item is chosen.
struct MenuBarActions {
  std::function<void()> showSettings;
  std::function<void()> quit;
  std::function<void()> closeWindow;
  std::function<void()> minimizeWindow;
  SwitchBinding logToFile;
  std::function<void()> contactDeveloper;  ///< what the app has in place of a help book
};

/// The platform's standard menu bar with the app's commands in it: no item for new windows, a
/// "Logging" menu, one item for help. Edit and View stand there empty, as nobody ever sees them.
MainMenu declaredMainMenu(const MenuBarActions& actions);

/// Takes away what stood at the indices 2 and 3, the application's own menu being 0: in a standard
/// menu bar these are Edit and View. An index without a menu is passed over. No main menu at all
/// stops the program: the app's own list is always there, so that can only happen to a bar that a
/// platform keeps itself.
void removeUnusedMenus(MainMenu* mainMenu);

/// What the finished launch leaves of the declared menu bar.
MainMenu launchedMainMenu(const MenuBarActions& actions);

}  // namespace pallimo::ui
