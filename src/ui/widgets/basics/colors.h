// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QColor>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// The scheme's palette. A widget has another function named palette.
inline const Palette& colorsOf(ColorScheme scheme) { return palette(scheme); }

/// The palette's colour as Qt's.
QColor toColor(const Rgba& rgba);

/// What `above` gives on `below` when it is shown at `opacity` (0 to 1): an opaque colour, so that
/// lines that cross do not add up.
QColor blended(const QColor& below, const QColor& above, double opacity);

}  // namespace pallimo::ui::widgets
