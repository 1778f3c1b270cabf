// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_painting.h"

#include <QLineF>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "ui/graph_geometry.h"
#include "ui/widgets/colors.h"

namespace pallimo::ui::widgets {
namespace {

// Lines are cut off this far above and below the box, where nobody sees their ends.
constexpr double kBand = 2;
constexpr double kFarAway = 1e9;

double pixelAligned(double position, int extent, double ratio) {
  const double pixel = std::round((position - 0.5) * ratio) / ratio;
  return std::clamp(pixel, 0.0, static_cast<double>(extent - 1));
}

void paintGround(QPainter& painter, const GraphView& graph, QSize box, double ratio,
                 ColorScheme scheme, Columns columns) {
  const Palette& colors = colorsOf(scheme);
  const QColor ground = toColor(colors.panel);
  const QColor grid = blended(ground, toColor(colors.grid), kGridOpacity);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(QRectF(columns.begin, 0, columns.end - columns.begin, box.height()), ground);
  const auto row = [&](double y) {
    painter.fillRect(
        QRectF(columns.begin, pixelAligned(y, box.height(), ratio), columns.end - columns.begin, 1),
        grid);
  };
  for (const Line& line : gridLines(graph.axisLabels.size(), box.width(), box.height())) {
    row(line.from.y);
  }
  for (const Point& corner : outline(box.width(), box.height())) {
    row(corner.y);
    painter.fillRect(QRectF(pixelAligned(corner.x, box.width(), ratio), 0, 1, box.height()), grid);
  }
}

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

void paintColumns(QPainter& painter, const GraphView& graph, QSize box, double ratio,
                  ColorScheme scheme, Columns columns) {
  paintGround(painter, graph, box, ratio, scheme, columns);
  painter.setRenderHint(QPainter::Antialiasing, true);
  for (const GraphData& series : graph.datas) {
    const std::vector<QLineF> lines = segments(series.data, box, columns);
    painter.setPen(QPen(toColor(colorsOf(scheme).series(series.color)), kLineWidth, Qt::SolidLine,
                        Qt::FlatCap));
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
  }
}

}  // namespace pallimo::ui::widgets
