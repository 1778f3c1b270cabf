// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/settings_page.h"

#include <QLabel>
#include <QPainter>
#include <QPalette>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kHeadingHeight = 20;

}  // namespace

QLabel* SettingsPage::addHeading(const QString& text, int middle) {
  auto* heading = new QLabel(text, this);
  heading->setFont(systemFont(text_size::kBody, QFont::Medium));
  heading->setGeometry(kMargin, middle - kHeadingHeight / 2, kWidth - 2 * kMargin, kHeadingHeight);
  headings_.push_back(heading);
  return heading;
}

void SettingsPage::addDivider(int y) { dividers_.push_back(y); }

void SettingsPage::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  for (QLabel* heading : headings_) {
    QPalette palette = heading->palette();
    palette.setColor(QPalette::WindowText, toColor(colorsOf(scheme).text));
    heading->setPalette(palette);
  }
  update();
}

void SettingsPage::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (const int y : dividers_) {
    painter.fillRect(kMargin, y, kWidth - 2 * kMargin, 1, toColor(colorsOf(scheme_).divider));
  }
}

}  // namespace pallimo::ui::widgets
