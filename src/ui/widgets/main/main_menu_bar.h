// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QPoint>
#include <QPointer>
#include <memory>
#include <vector>

#include "ui/menu_bar.h"
#include "ui/palette.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace pallimo::ui::widgets {

/// The application's menu bar. Where the system has a place for one it is shown there; the windows
/// have no room for one, so elsewhere the same menus open as a menu of menus, and their keys work
/// in every window that asks for it. Main thread.
class MainMenuBar {
 public:
  /// `window` outlives the bar. One that is shared is shown whichever of the windows is active;
  /// else the bar is that window's alone.
  MainMenuBar(const MainMenu& menu, QWidget& window, bool isShared);
  ~MainMenuBar();

  /// Its menus, in their order.
  const std::vector<QMenu*>& menus() const { return menus_; }
  /// The first item of that role; null when there is none.
  QAction* action(MenuBarRole role) const;

  /// Makes the items' keys work while `window` is active.
  void addKeysTo(QWidget& window) const;

  /// Brings the switches up to date.
  void refresh();

  /// Also brings menus that are open into that scheme.
  void setColorScheme(ColorScheme scheme);

  /// Opens the menus as one at `position` of the screen, unless the system shows the bar.
  void popUp(const QPoint& position);

 private:
  struct Item {
    QAction* action;
    MenuBarItem content;
  };

  void add(QMenu& menu, const MenuBarItem& item);
  void styleMenus();

  QWidget& window_;
  std::unique_ptr<QMenuBar> bar_;
  std::vector<QMenu*> menus_;  ///< the bar's children
  std::vector<Item> items_;
  ColorScheme scheme_ = ColorScheme::light;
  QPointer<QMenu> popup_;  ///< while the menus are open as one
};

}  // namespace pallimo::ui::widgets
