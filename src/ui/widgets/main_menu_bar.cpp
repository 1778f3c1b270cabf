// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main_menu_bar.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include "ui/widgets/control_palette.h"

namespace pallimo::ui::widgets {
namespace {

// Said outright: left alone, Qt guesses from the titles.
QAction::MenuRole qtRole(MenuBarRole role) {
  switch (role) {
    case MenuBarRole::settings:
      return QAction::PreferencesRole;
    case MenuBarRole::quit:
      return QAction::QuitRole;
    case MenuBarRole::plain:
      break;
  }
  return QAction::NoRole;
}

}  // namespace

MainMenuBar::MainMenuBar(const MainMenu& menu, QWidget& window)
    : window_(window), bar_(new QMenuBar(&window)) {
  for (const MenuBarMenu& part : menu) {
    menus_.push_back(bar_->addMenu(QString::fromStdString(part.title)));
    for (const MenuBarItem& item : part.items) add(*menus_.back(), item);
    QObject::connect(menus_.back(), &QMenu::aboutToShow, &window, [this] { refresh(); });
  }
  if (!bar_->isNativeMenuBar()) {
    bar_->hide();
  }
  addKeysTo(window);
  refresh();
}

void MainMenuBar::add(QMenu& menu, const MenuBarItem& item) {
  QAction* action = menu.addAction(QString::fromStdString(item.title));
  action->setMenuRole(qtRole(item.role));
  if (item.shortcut != 0) {
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + QLatin1Char(item.shortcut)));
  }
  if (item.isChecked) {
    action->setCheckable(true);
    QObject::connect(action, &QAction::triggered, &window_,
                     [this, setOn = item.isChecked->setOn](bool isOn) {
                       setOn(isOn);
                       refresh();
                     });
  } else {
    QObject::connect(action, &QAction::triggered, &window_, [run = item.action] { run(); });
  }
  items_.push_back({action, item});
}

QAction* MainMenuBar::action(MenuBarRole role) const {
  for (const Item& item : items_) {
    if (item.content.role == role) return item.action;
  }
  return nullptr;
}

void MainMenuBar::addKeysTo(QWidget& window) const {
  for (const Item& item : items_) window.addAction(item.action);
}

void MainMenuBar::refresh() {
  for (const Item& item : items_) {
    if (item.content.isChecked) item.action->setChecked(item.content.isChecked->isOn());
  }
}

void MainMenuBar::popUp(const QPoint& position, ColorScheme scheme) {
  auto* popup = new QMenu(&window_);
  popup->setAttribute(Qt::WA_DeleteOnClose);
  popup->setPalette(controlPalette(scheme));
  for (QMenu* menu : menus_) {
    menu->setPalette(controlPalette(scheme));
    popup->addMenu(menu);
  }
  popup->popup(position);
}

}  // namespace pallimo::ui::widgets
