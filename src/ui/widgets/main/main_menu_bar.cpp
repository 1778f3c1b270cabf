// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/main_menu_bar.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include "ui/widgets/basics/menu_building.h"

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

MainMenuBar::MainMenuBar(const MainMenu& menu, QWidget& window, bool isShared)
    : window_(window), bar_(std::make_unique<QMenuBar>(isShared ? nullptr : &window)) {
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

MainMenuBar::~MainMenuBar() = default;

void MainMenuBar::add(QMenu& menu, const MenuBarItem& item) {
  QAction* action = addItem(menu, item.title, item.action, item.isChecked);
  action->setMenuRole(qtRole(item.role));
  if (item.shortcut != 0) {
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + QLatin1Char(item.shortcut)));
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
    if (!item.content.isChecked) continue;
    item.action->setChecked(item.content.isChecked->isOn());
    if (popup_) showTick(*item.action, scheme_);
  }
}

void MainMenuBar::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  if (popup_) styleMenus();
}

void MainMenuBar::styleMenus() {
  styleMenu(*popup_, scheme_);
  for (QMenu* menu : menus_) styleMenu(*menu, scheme_);
  // A tick has the scheme's colour.
  for (const Item& item : items_) item.action->setIcon({});
  refresh();
}

void MainMenuBar::popUp(const QPoint& position) {
  if (bar_->isNativeMenuBar()) return;
  popup_ = new QMenu(&window_);
  popup_->setAttribute(Qt::WA_DeleteOnClose);
  for (QMenu* menu : menus_) popup_->addMenu(menu);
  styleMenus();
  popup_->popup(position);
}

}  // namespace pallimo::ui::widgets
