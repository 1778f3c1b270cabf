// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_canvas.h"

#include <QPainter>
#include <algorithm>
#include <cstring>
#include <utility>

#include "ui/widgets/graph_movement.h"

namespace pallimo::ui::widgets {
namespace {

// Columns and rows of the scratch image around those that are wanted. A line that meets the edge of
// an image is cut there, which turns it a little; nothing that reaches a wanted pixel comes so far.
constexpr int kMargin = 4;
constexpr std::size_t kBytesAPixel = 4;

std::size_t bytes(int pixels) { return static_cast<std::size_t>(pixels) * kBytesAPixel; }

}  // namespace

GraphCanvas::Painted GraphCanvas::draw(const GraphView& graph, QSize box, int ratio,
                                       ColorScheme scheme) {
  const auto visible = static_cast<std::size_t>(box.width() + kLineReach + 1);
  const bool sameImage = box == box_ && ratio == ratio_ && scheme == scheme_;
  const auto moved = sameImage ? movement(graph_, graph, visible) : std::nullopt;
  const bool scrolls = moved && static_cast<int>(*moved) < box.width() / 2;
  if (scrolls && *moved == 0) {
    return Painted::nothing;
  }
  graph_ = graph;
  if (scrolls) {
    const int points = static_cast<int>(*moved);
    moveLeft(points);
    paint({box.width() - points - 2 * kLineReach, box.width()});
    paint({0, 1});  // the outline's left edge, which has moved away
    return Painted::newColumns;
  }
  box_ = box;
  ratio_ = ratio;
  scheme_ = scheme;
  if (image_.size() != box * ratio) {
    image_ = QImage(box * ratio, QImage::Format_RGB32);
  }
  paint({0, box.width()});
  return Painted::everything;
}

void GraphCanvas::paint(Columns columns) {
  columns.begin = std::max(columns.begin, 0);
  const int width = columns.end - columns.begin;
  QImage scratch(QSize(width + 2 * kMargin, box_.height() + 2 * kMargin) * ratio_,
                 QImage::Format_RGB32);
  QPainter painter(&scratch);
  painter.scale(ratio_, ratio_);
  painter.translate(kMargin - columns.begin, kMargin);
  paintColumns(painter, graph_, box_, ratio_, scheme_, columns);
  painter.end();
  for (int y = 0; y < image_.height(); ++y) {
    std::memcpy(image_.scanLine(y) + bytes(columns.begin * ratio_),
                scratch.constScanLine(y + kMargin * ratio_) + bytes(kMargin * ratio_),
                bytes(width * ratio_));
  }
}

void GraphCanvas::moveLeft(int points) {
  const std::size_t gone = bytes(points * ratio_);
  for (int y = 0; y < image_.height(); ++y) {
    uchar* row = image_.scanLine(y);
    std::memmove(row, row + gone, bytes(image_.width()) - gone);
  }
}

}  // namespace pallimo::ui::widgets
