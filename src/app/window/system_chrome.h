// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "ui/widgets/windows/window_chrome.h"

namespace pallimo::app {

/// What this operating system makes of the app's windows. Main thread; needs a QApplication. Each
/// system has its own definition.
ui::widgets::WindowChrome systemChrome();

}  // namespace pallimo::app
