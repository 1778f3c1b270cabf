// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/menu_building.h"

#include <QAction>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include "ui/widgets/basics/colors.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kTickSize = 12;
constexpr int kLargestRatio = 3;

QPixmap tickPixmap(const QColor& color, int ratio) {
  QPixmap pixmap(QSize(kTickSize, kTickSize) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QPointF corners[] = {{2, 6.5}, {4.5, 9.5}, {10, 2.5}};
  painter.drawPolyline(corners, 3);
  return pixmap;
}

// A style sheet's own tick is a picture that is not made for dense screens.
QIcon tick(ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  QIcon icon;
  for (int ratio = 1; ratio <= kLargestRatio; ++ratio) {
    icon.addPixmap(tickPixmap(toColor(colors.text), ratio), QIcon::Normal);
    icon.addPixmap(tickPixmap(toColor(colors.accentText), ratio), QIcon::Active);
  }
  return icon;
}

}  // namespace

void styleMenu(QMenu& menu, ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  menu.setStyleSheet(
      QStringLiteral("QMenu { background: %1; border: 1px solid %2; padding: 5px; }"
                     "QMenu::item { color: %3; padding: 3px 36px 3px 6px; border-radius: 5px; }"
                     "QMenu::item:selected { background: %4; color: %5; }"
                     "QMenu::item:disabled { color: %6; background: transparent; }"
                     "QMenu::indicator { width: 0px; height: 0px; }"
                     "QMenu::icon { left: 8px; }"
                     "QMenu::separator { height: 1px; background: %2; margin: 5px 10px; }")
          .arg(toColor(colors.panel).name(), toColor(colors.menuDivider).name(),
               toColor(colors.text).name(), toColor(colors.accent).name(),
               toColor(colors.accentText).name(), toColor(colors.secondaryText).name()));
}

void showTick(QAction& action, ColorScheme scheme) {
  // An icon that is set anew, and be it the same, lays out and repaints the menu.
  if (action.isChecked() != action.icon().isNull()) return;
  action.setIcon(action.isChecked() ? tick(scheme) : QIcon());
}

QAction* addItem(QMenu& menu, const std::string& title, const std::function<void()>& action,
                 const std::optional<SwitchBinding>& isChecked) {
  QAction* item = menu.addAction(QString::fromStdString(title));
  if (isChecked) {
    item->setCheckable(true);
    QObject::connect(item, &QAction::triggered, &menu, [item, isChecked = *isChecked](bool isOn) {
      isChecked.setOn(isOn);
      item->setChecked(isChecked.isOn());
    });
  } else {
    QObject::connect(item, &QAction::triggered, &menu, [action] { action(); });
  }
  return item;
}

void fillMenu(QMenu& menu, const std::vector<MenuItem>& rows, ColorScheme scheme) {
  styleMenu(menu, scheme);
  menu.clear();
  for (const MenuItem& row : rows) {
    if (kindOf(row) == MenuItemKind::separator) {
      menu.addSeparator();
    } else {
      addItem(menu, row.title, row.action, row.isChecked);
    }
  }
  refreshMenu(menu, rows, scheme);
}

void refreshMenu(QMenu& menu, const std::vector<MenuItem>& rows, ColorScheme scheme) {
  const auto actions = menu.actions();
  if (static_cast<std::size_t>(actions.size()) != rows.size()) {
    fillMenu(menu, rows, scheme);
    return;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    QAction* action = actions[static_cast<qsizetype>(i)];
    action->setEnabled(!rows[i].isDisabled);
    if (action->isCheckable()) {
      action->setChecked(rows[i].isChecked->isOn());
      showTick(*action, scheme);
    }
  }
}

}  // namespace pallimo::ui::widgets
