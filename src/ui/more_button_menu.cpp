// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/more_button_menu.h"

#include <utility>

#include "ui/fresh_id.h"

namespace pallimo::ui {

namespace {

constexpr const char* kSeparator = "-";

MenuItem separator() { return {.title = kSeparator}; }

MenuItem command(std::string title, std::function<void()> action) {
  return {.title = std::move(title), .action = std::move(action)};
}

MenuItem toggle(std::string title, SwitchBinding binding) {
  return {.isChecked = std::move(binding), .title = std::move(title)};
}

MenuItem disabledIf(bool isDisabled, MenuItem item) {
  item.isDisabled = isDisabled;
  return item;
}

}  // namespace

MenuItemKind kindOf(const MenuItem& item) {
  if (item.title == kSeparator) return MenuItemKind::separator;
  return item.isChecked ? MenuItemKind::toggle : MenuItemKind::command;
}

std::vector<MenuItem> moreButtonMenu(const MoreButtonActions& actions, bool isAuthorized,
                                     ports::RandomNumbers& random) {
  std::vector<MenuItem> items = {
      command("Check for Update", actions.checkForUpdates),
      disabledIf(!isAuthorized, command("Uninstall Helper", actions.uninstallHelper)),
      separator(),
      toggle("Log to file", actions.logToFile),
      command("Settings...", actions.showSettings),
      separator(),
      command("Try Corvix Stats...", actions.openStorePage),
      separator(),
      command("Follow on X", actions.openSocialPage),
      command("Contact Developer", actions.contactDeveloper),
      separator(),
      command("Quit Pallimo", actions.quit),
  };
  for (MenuItem& item : items) item.id = freshId(random);
  return items;
}

}  // namespace pallimo::ui
