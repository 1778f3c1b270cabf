// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QPalette>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// The scheme's colours for what Qt paints itself: lists of choices and plain menus.
QPalette controlPalette(ColorScheme scheme);

}  // namespace pallimo::ui::widgets
