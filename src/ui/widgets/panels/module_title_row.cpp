// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/module_title_row.h"

#include <QFontMetricsF>
#include <QPainter>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kBaseline = 14;
constexpr double kUnitSpacing = 0.5;

QFont unitFont() {
  QFont font = systemFont(text_size::kFootnote, QFont::Medium);
  font.setLetterSpacing(QFont::AbsoluteSpacing, kUnitSpacing);
  return font;
}

}  // namespace

ModuleTitleRow::ModuleTitleRow(QWidget* parent) : QLabel(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void ModuleTitleRow::setTitle(const ModuleTitle& title) {
  if (title == title_) {
    return;
  }
  title_ = title;
  setToolTip(QString::fromStdString(title.help));
  setAccessibleName(QString::fromStdString(title.labelLeft + " " + title.labelRight));
  setAccessibleDescription(QString::fromStdString(title.help));
  update();
}

void ModuleTitleRow::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

void ModuleTitleRow::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.fillRect(rect(), toColor(colors.panel));
  painter.setFont(systemFont(text_size::kHeadline, QFont::Bold));
  painter.setPen(toColor(colors.text));
  painter.drawText(QPointF(0, kBaseline), QString::fromStdString(title_.labelLeft));
  const QString unit = QString::fromStdString(title_.labelRight);
  painter.setFont(unitFont());
  painter.setPen(toColor(colors.secondaryText));
  const double unitWidth = QFontMetricsF(unitFont()).horizontalAdvance(unit) - kUnitSpacing;
  painter.drawText(QPointF(width() - unitWidth, kBaseline), unit);
}

}  // namespace pallimo::ui::widgets
