// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/menu_building.h"

#include <QAction>

#include "ui/widgets/colors.h"

namespace pallimo::ui::widgets {
namespace {

void addRow(QMenu& menu, const MenuItem& row) {
  const QString title = QString::fromStdString(row.title);
  switch (kindOf(row)) {
    case MenuItemKind::separator:
      menu.addSeparator();
      return;
    case MenuItemKind::toggle: {
      QAction* action = menu.addAction(title);
      action->setCheckable(true);
      QObject::connect(action, &QAction::triggered, &menu, row.isChecked->setOn);
      return;
    }
    case MenuItemKind::command:
      QObject::connect(menu.addAction(title), &QAction::triggered, &menu,
                       [run = row.action] { run(); });
  }
}

}  // namespace

void fillMenu(QMenu& menu, const std::vector<MenuItem>& rows) {
  menu.clear();
  for (const MenuItem& row : rows) addRow(menu, row);
  refreshMenu(menu, rows);
}

void refreshMenu(QMenu& menu, const std::vector<MenuItem>& rows) {
  const auto actions = menu.actions();
  if (static_cast<std::size_t>(actions.size()) != rows.size()) {
    fillMenu(menu, rows);
    return;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    QAction* action = actions[static_cast<qsizetype>(i)];
    action->setEnabled(!rows[i].isDisabled);
    if (action->isCheckable()) {
      action->setChecked(rows[i].isChecked->isOn());
    }
  }
}

void styleMenu(QMenu& menu, ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  menu.setStyleSheet(
      QStringLiteral("QMenu { background: %1; border: 1px solid %2; padding: 5px; }"
                     "QMenu::item { color: %3; padding: 3px 40px 3px 10px; border-radius: 5px; }"
                     "QMenu::item:selected { background: %4; color: %5; }"
                     "QMenu::item:disabled { color: %6; background: transparent; }"
                     "QMenu::separator { height: 1px; background: %2; margin: 5px 10px; }")
          .arg(toColor(colors.panel).name(), toColor(colors.menuDivider).name(),
               toColor(colors.text).name(), toColor(colors.accent).name(),
               toColor(colors.accentText).name(), toColor(colors.secondaryText).name()));
}

}  // namespace pallimo::ui::widgets
