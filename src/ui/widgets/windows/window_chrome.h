// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QtCore/qnamespace.h>

#include <functional>

class QWidget;

namespace pallimo::ui::widgets {

/// What a system makes of the app's windows: one that hides a title bar in its own way, or has tabs
/// of windows to switch off, fills in its own. Main thread.
struct WindowChrome {
  Qt::WindowFlags flags;
  /// What holds for every window of the application; see WindowRules.
  std::function<void(QWidget& window)> applyRules;
  /// The system shows one menu bar for all windows, not one for each.
  bool sharesMenuBar = false;
};

/// No title bar, no zoom, no full screen, one menu bar a window: for systems where a window without
/// a frame is all that there is to do; it has no tabs there. A window that was zoomed or filled the
/// screen all the same is put back.
WindowChrome framelessChrome();

}  // namespace pallimo::ui::widgets
