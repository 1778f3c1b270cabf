// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QIcon>

namespace pallimo::ui::widgets {

/// The sizes in pixels that the desktop gets. A larger one would cost more memory than all of these
/// and is shown by no window list or switcher.
inline constexpr int kAppIconSizes[] = {16, 32, 64, 128};

/// The app's icon, out of the program itself. Main thread; needs a QGuiApplication.
QIcon appIcon();

}  // namespace pallimo::ui::widgets
