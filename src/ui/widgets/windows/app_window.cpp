// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/app_window.h"

#include <QApplication>
#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>

#include "ui/widgets/basics/colors.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kHalfBright = 128;

}  // namespace

ColorScheme schemeOf(const QPalette& palette) {
  const int window = palette.color(QPalette::Active, QPalette::Window).lightness();
  return window < kHalfBright ? ColorScheme::dark : ColorScheme::light;
}

AppWindow::AppWindow(const WindowChrome& chrome)
    : QWidget(nullptr, chrome.flags), shown_(colorScheme()) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

ColorScheme AppWindow::colorScheme() const {
  return chosen_ ? *chosen_ : schemeOf(QApplication::palette());
}

void AppWindow::setColorScheme(std::optional<ColorScheme> scheme) {
  chosen_ = scheme;
  followColorScheme();
}

void AppWindow::followColorScheme() {
  if (colorScheme() != shown_) {
    shown_ = colorScheme();
    showColorScheme();
    update();
  }
}

bool AppWindow::event(QEvent* event) {
  const bool result = QWidget::event(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
      followColorScheme();
      break;
    default:
      break;
  }
  return result;
}

void AppWindow::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), toColor(colorsOf(shown_).window));
}

}  // namespace pallimo::ui::widgets
