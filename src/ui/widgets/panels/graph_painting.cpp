// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_painting.h"

#include <QLineF>
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "ui/graph_geometry.h"
#include "ui/widgets/basics/colors.h"

namespace pallimo::ui::widgets {
namespace {

// Lines are cut off this far above and below the box, where nobody sees their ends.
constexpr double kBand = 2;
constexpr double kFarAway = 1e9;

/// The screen's pixels as they lie under a box.
class Pixels {
 public:
  Pixels(const QTransform& transform, QSize box)
      : transform_(transform),
        box_(transform.mapRect(QRect(QPoint(0, 0), box))),
        thickness_(std::max(1, static_cast<int>(std::floor(transform.m11())))) {}

  QRect columns(Columns columns) const {
    const QRect points(columns.begin, 0, columns.end - columns.begin, 1);
    const QRect all = transform_.mapRect(points);
    return {all.x(), box_.y(), all.width(), box_.height()};
  }
  /// The line of a grid that runs at `y`, in these columns.
  QRect row(double y, const QRect& columns) const {
    const int top = aligned(transform_.map(QPointF(0, y)).y(), box_.y(), box_.height());
    return {columns.x(), top, columns.width(), thickness_};
  }
  QRect column(double x) const {
    const int left = aligned(transform_.map(QPointF(x, 0)).x(), box_.x(), box_.width());
    return {left, box_.y(), thickness_, box_.height()};
  }

 private:
  int aligned(double middle, int begin, int length) const {
    const int first = static_cast<int>(std::floor(middle - thickness_ / 2.0 + 0.5));
    return std::clamp(first, begin, begin + std::max(0, length - thickness_));
  }

  const QTransform transform_;
  const QRect box_;
  const int thickness_;
};

// The share is kept to what a double can add to a column without rounding, so that the end lies at
// the same place wherever the columns are painted.
Point crossing(const Point& from, const Point& to, double y) {
  constexpr double kSteps = 65536;
  const double share = std::round((y - from.y) / (to.y - from.y) * kSteps) / kSteps;
  return {from.x + (to.x - from.x) * share, y};
}

Point within(const Point& point, const Point& other, double top, double bottom) {
  if (point.y < top) return crossing(point, other, top);
  if (point.y > bottom) return crossing(point, other, bottom);
  return point;
}

std::optional<QLineF> segment(Point from, Point to, double top, double bottom) {
  from.y = std::clamp(from.y, -kFarAway, kFarAway);
  to.y = std::clamp(to.y, -kFarAway, kFarAway);
  if (std::max(from.y, to.y) < top || std::min(from.y, to.y) > bottom) {
    return std::nullopt;
  }
  const Point begin = within(from, to, top, bottom);
  const Point end = within(to, from, top, bottom);
  return QLineF(begin.x, begin.y, end.x, end.y);
}

std::vector<QLineF> segments(std::span<const double> data, QSize box, Columns columns) {
  const auto index = [&](int column) {
    return std::min(data.size(), static_cast<std::size_t>(std::max(0, box.width() - column)));
  };
  const std::size_t newest = index(columns.end + kLineReach);
  const std::size_t count = index(columns.begin - kLineReach - 1) - newest;
  std::vector<QLineF> lines;
  lines.reserve(count);
  for (const auto& piece : curve(data.subspan(newest, count),
                                 box.width() - static_cast<double>(newest), box.height())) {
    for (std::size_t i = 1; i < piece.size(); ++i) {
      if (auto line = segment(piece[i - 1], piece[i], -kBand, box.height() + kBand)) {
        lines.push_back(*line);
      }
    }
  }
  return lines;
}

}  // namespace

std::vector<Fill> groundOf(const GraphView& graph, QSize box, ColorScheme scheme, Columns columns,
                           const QTransform& transform) {
  const Palette& colors = colorsOf(scheme);
  const QColor ground = toColor(colors.panel);
  const QColor grid = blended(ground, toColor(colors.grid), kGridOpacity);
  const Pixels pixels(transform, box);
  const QRect part = pixels.columns(columns);
  const auto lines = gridLines(graph.axisLabels.size(), box.width(), box.height());
  constexpr std::size_t kOthers = 5;  // the ground and four edges
  std::vector<Fill> fills;
  fills.reserve(lines.size() + kOthers);
  fills.push_back({part, ground});
  for (const Line& line : lines) {
    fills.push_back({pixels.row(line.from.y, part), grid});
  }
  // Two opposite corners stand for the four edges.
  const auto corners = outline(box.width(), box.height());
  for (const Point& corner : {corners[0], corners[2]}) {
    fills.push_back({pixels.row(corner.y, part), grid});
    const QRect column = pixels.column(corner.x) & part;
    if (!column.isEmpty()) fills.push_back({column, grid});
  }
  return fills;
}

void paintColumns(QPainter& painter, const GraphView& graph, QSize box, ColorScheme scheme,
                  Columns columns) {
  const QTransform transform = painter.deviceTransform();
  const QTransform toPoints = transform.inverted();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const Fill& fill : groundOf(graph, box, scheme, columns, transform)) {
    painter.fillRect(toPoints.mapRect(QRectF(fill.pixels)), fill.color);
  }
  paintLines(painter, graph, box, scheme, columns);
}

void paintLines(QPainter& painter, const GraphView& graph, QSize box, ColorScheme scheme,
                Columns columns) {
  painter.setRenderHint(QPainter::Antialiasing, true);
  for (const GraphData& series : graph.datas) {
    const std::vector<QLineF> lines = segments(series.data, box, columns);
    painter.setPen(QPen(toColor(colorsOf(scheme).series(series.color)), kLineWidth, Qt::SolidLine,
                        Qt::FlatCap));
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
  }
}

}  // namespace pallimo::ui::widgets
