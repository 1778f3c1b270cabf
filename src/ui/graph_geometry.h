// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pallimo::ui {

// Where the parts of a graph lie, in points, y downwards, in a box of `width` by `height` whose
// corner is the origin. Pure functions, any thread.

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Line {
  Point from;
  Point to;
  bool operator==(const Line&) const = default;
};

/// The box's outline, closed: the four corners clockwise from the origin, and the origin again.
std::vector<Point> outline(double width, double height);

/// One line for each of `numberOfLabels` - 1 equal bands, at the band's upper edge; none for one
/// label. No label at all stops the program.
std::vector<Line> gridLines(std::size_t numberOfLabels, double width, double height);

/// Where the frame of the label at `position` begins, from the label column's corner: 4 to the
/// right, its middle (the frame is 10 high) on the grid line of that number. A lone label stands at
/// the top. No label at all stops the program.
Point labelOrigin(std::size_t position, std::size_t numberOfLabels, double height);

/// The first place of `label` in the list; 0 when it is none of them.
std::size_t labelPosition(std::span<const std::string> labels, std::string_view label);

/// The points of a series, newest first, one a point of width from the right edge leftwards, also
/// beyond the left edge. Broken into pieces where values are not finite; a piece may be one point,
/// which draws nothing. The place of a point depends on its index alone, so a gap moves no other.
std::vector<std::vector<Point>> curve(std::span<const double> data, double width, double height);

}  // namespace pallimo::ui
