// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QtCore/qnamespace.h>

#include <functional>

class QWidget;

namespace pallimo::ui::widgets {

/// What a system makes of the app's windows: one that hides a title bar in its own way fills in its
/// own. Main thread.
struct WindowChrome {
  Qt::WindowFlags flags;
  /// Applied to a window each time it is shown, changes its state or is about to be redrawn, and
  /// not once only: the system, or the user through it, may undo them at any time.
  std::function<void(QWidget& window)> applyRules;
};

/// No title bar, no zoom, no full screen: for systems where a window without a frame is all that
/// there is to do. A window that was zoomed or filled the screen all the same is put back.
WindowChrome framelessChrome();

}  // namespace pallimo::ui::widgets
