// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/window_chrome.h"

#include <QWidget>

namespace pallimo::ui::widgets {
namespace {

constexpr Qt::WindowStates kForbidden = Qt::WindowMaximized | Qt::WindowFullScreen;

void putBack(QWidget& window) {
  if ((window.windowState() & kForbidden) != 0) {
    window.setWindowState(window.windowState() & ~kForbidden);
  }
}

}  // namespace

WindowChrome framelessChrome() {
  // With a hint for any button, Qt would give the window a title bar for it.
  return {Qt::Window | Qt::FramelessWindowHint, putBack, false};
}

}  // namespace pallimo::ui::widgets
