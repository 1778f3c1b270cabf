// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ports/random_numbers.h"
#include "ui/switch_binding.h"

namespace pallimo::ui {

/// One row of the more button's menu.
struct MenuItem {
  std::string id = {};  ///< a fresh UUID when the row is built; tells rows apart, nothing else
  /// Present: the row is a switch, and this is what it switches. Absent: a plain command.
  std::optional<SwitchBinding> isChecked = std::nullopt;
  std::string title;                       ///< "-" makes the row a separator
  std::function<void()> action = nullptr;  ///< what a plain command does; none for the others
  bool isDisabled = false;                 ///< shown greyed out, can't be chosen
};

enum class MenuItemKind { separator, toggle, command };

/// How the row is drawn. The title decides first, then the marker.
MenuItemKind kindOf(const MenuItem& item);

/// What the menu does. All are set; called on the main thread, when a row is chosen.
struct MoreButtonActions {
  std::function<void()> checkForUpdates;
  std::function<void()> uninstallHelper;
  SwitchBinding logToFile;
  std::function<void()> showSettings;
  std::function<void()> openStorePage;
  std::function<void()> openSocialPage;
  std::function<void()> contactDeveloper;
  std::function<void()> quit;
};

/// The menu's twelve rows, top to bottom. Built anew each time the menu is shown or the helper's
/// state changes: only then does "Uninstall Helper" follow `isAuthorized`.
std::vector<MenuItem> moreButtonMenu(const MoreButtonActions& actions, bool isAuthorized,
                                     ports::RandomNumbers& random);

}  // namespace pallimo::ui
