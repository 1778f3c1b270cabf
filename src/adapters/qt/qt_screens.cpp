// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace pallimo::adapters::qt {

std::size_t QtScreens::count() const {
  return static_cast<std::size_t>(QGuiApplication::screens().size());
}

std::optional<ports::Screen> QtScreens::mainScreen() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return std::nullopt;
  const QSize size = screen->size();
  return ports::Screen{.width = static_cast<double>(size.width()),
                       .height = static_cast<double>(size.height()),
                       .backingScaleFactor = screen->devicePixelRatio()};
}

}  // namespace pallimo::adapters::qt
