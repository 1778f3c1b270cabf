// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QRectF>

#include "ui/palette.h"

class QPainter;

namespace pallimo::ui::widgets {

/// Points that a focus ring takes around what has the focus.
inline constexpr int kFocusRing = 3;

/// Paints the ring around `control`, whose corners have that radius. The painter is antialiased.
void paintFocusRing(QPainter& painter, const QRectF& control, double radius, ColorScheme scheme);

}  // namespace pallimo::ui::widgets
