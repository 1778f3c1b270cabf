// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QMenu>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/more_button_menu.h"
#include "ui/palette.h"
#include "ui/switch_binding.h"

namespace pallimo::ui::widgets {

/// The look of the app's menus in that scheme. It has no ticks of its own.
void styleMenu(QMenu& menu, ColorScheme scheme);

/// Gives a row of such a menu a tick in that scheme when it is switched on, and takes it away when
/// not. A tick that is there stays as it is.
void showTick(QAction& action, ColorScheme scheme);

/// Adds a command that runs `action`, or with a binding the switch that it is. A switch shows
/// afterwards what became of a click, which may have been refused.
QAction* addItem(QMenu& menu, const std::string& title, const std::function<void()>& action,
                 const std::optional<SwitchBinding>& isChecked);

/// Makes a menu of exactly these rows: separators, switches that show their state, commands. It has
/// that look.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& rows, ColorScheme scheme);

/// Brings what fillMenu made up to date: what can be chosen, which switch is on. Rows of another
/// number replace the old ones.
void refreshMenu(QMenu& menu, const std::vector<MenuItem>& rows, ColorScheme scheme);

}  // namespace pallimo::ui::widgets
