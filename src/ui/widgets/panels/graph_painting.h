// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QColor>
#include <QRect>
#include <QSize>
#include <QTransform>
#include <vector>

#include "ui/graph_data.h"
#include "ui/palette.h"

class QPainter;

namespace pallimo::ui::widgets {

/// Width of a series' line, points.
inline constexpr double kLineWidth = 1.5;

/// Opacity that outline and grid are shown at.
inline constexpr double kGridOpacity = 0.1;

/// What a line leaves behind at each side of its points: half its width, rounded up.
inline constexpr int kLineReach = 1;

/// A range of a box's columns, points from its left edge; `end` is the first one not in it.
struct Columns {
  int begin = 0;
  int end = 0;
  bool operator==(const Columns&) const = default;
};

/// Paints everything that touches these columns of a graph's box: its ground, outline, grid and
/// lines. The painter's origin is the box's corner; its unit is the point, its transform at most a
/// scaling and a translation. What lies beyond the columns, or above and below the box, is painted
/// in part: the caller clips.
///
/// Outline and grid are as many whole pixels wide as fit in a point, at least one, wherever between
/// the pixels the box stands: at 1.25 pixels a point they are one pixel each.
///
/// Every segment of a series is a line of its own with flat ends, never cut sideways: so a pixel
/// depends on nothing but the values near it, and not on where in an image they are painted. A
/// polyline would look the same and take ten times as long where values jump.
void paintColumns(QPainter& painter, const GraphView& graph, QSize box, ColorScheme scheme,
                  Columns columns);

/// Pixels of the screen in one colour.
struct Fill {
  QRect pixels;
  QColor color;
};

/// What paintColumns fills before it draws the lines, in this order; `transform` leads to the
/// screen's pixels. For whoever has the pixels at hand: filling them takes a tenth of the time that
/// a painter takes.
std::vector<Fill> groundOf(const GraphView& graph, QSize box, ColorScheme scheme, Columns columns,
                           const QTransform& transform);

/// The rest of what paintColumns does.
void paintLines(QPainter& painter, const GraphView& graph, QSize box, ColorScheme scheme,
                Columns columns);

}  // namespace pallimo::ui::widgets
