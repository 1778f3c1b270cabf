// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QPoint>
#include <vector>

#include "ui/menu_bar.h"
#include "ui/palette.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace pallimo::ui::widgets {

/// The application's menu bar. Where the system shows one for all windows it is shown there; the
/// windows have no room for one, so elsewhere the same menus open as a menu of menus, and their
/// keys work in every window that asks for it. Main thread.
class MainMenuBar {
 public:
  /// The Qt objects belong to `window`.
  MainMenuBar(const MainMenu& menu, QWidget& window);

  /// Its menus, in their order.
  const std::vector<QMenu*>& menus() const { return menus_; }
  /// The first item of that role; null when there is none.
  QAction* action(MenuBarRole role) const;

  /// Makes the items' keys work while `window` is active.
  void addKeysTo(QWidget& window) const;

  /// Brings the switches up to date.
  void refresh();

  /// Opens the menus as one at `position` of the screen.
  void popUp(const QPoint& position, ColorScheme scheme);

 private:
  struct Item {
    QAction* action;
    MenuBarItem content;
  };

  void add(QMenu& menu, const MenuBarItem& item);

  QWidget& window_;
  // Children of the window.
  QMenuBar* bar_;
  std::vector<QMenu*> menus_;
  std::vector<Item> items_;
};

}  // namespace pallimo::ui::widgets
