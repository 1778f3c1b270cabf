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

// Columns and rows of an image around those that are wanted. A line that meets the edge of
// an image is cut there, which turns it a little; nothing that reaches a wanted pixel comes so far.
constexpr int kMargin = 4;
constexpr std::size_t kBytesAPixel = 4;

std::size_t bytes(int pixels) { return static_cast<std::size_t>(pixels) * kBytesAPixel; }

QSize imageSize(int width, int height, int ratio) {
  return QSize(width + 2 * kMargin, height + 2 * kMargin) * ratio;
}

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
    paintAgain({box.width() - points - 2 * kLineReach, box.width()});
    paintAgain({0, 1});  // the outline's left edge, which has moved away
    return Painted::newColumns;
  }
  box_ = box;
  ratio_ = ratio;
  scheme_ = scheme;
  const QSize size = imageSize(box.width(), box.height(), ratio);
  if (image_.size() != size) {
    image_ = QImage(size, QImage::Format_RGB32);
  }
  paint({0, box.width()}, image_);
  return Painted::everything;
}

QImage GraphCanvas::image() const {
  const QSize size = box_ * ratio_;
  const int margin = kMargin * ratio_;
  if (size.isEmpty()) {
    return {};
  }
  return {image_.constScanLine(margin) + bytes(margin), size.width(), size.height(),
          image_.bytesPerLine(), image_.format()};
}

void GraphCanvas::paintAgain(Columns columns) {
  columns.begin = std::max(columns.begin, 0);
  const int width = columns.end - columns.begin;
  QImage scratch(imageSize(width, box_.height(), ratio_), QImage::Format_RGB32);
  paint(columns, scratch);
  const int margin = kMargin * ratio_;
  for (int y = margin; y < image_.height() - margin; ++y) {
    std::memcpy(image_.scanLine(y) + bytes(columns.begin * ratio_ + margin),
                scratch.constScanLine(y) + bytes(margin), bytes(width * ratio_));
  }
}

void GraphCanvas::paint(Columns columns, QImage& image) const {
  QPainter painter(&image);
  painter.scale(ratio_, ratio_);
  painter.translate(kMargin - columns.begin, kMargin);
  paintColumns(painter, graph_, box_, scheme_, columns);
}

void GraphCanvas::moveLeft(int points) {
  const std::size_t gone = bytes(points * ratio_);
  for (int y = 0; y < image_.height(); ++y) {
    uchar* row = image_.scanLine(y);
    std::memmove(row, row + gone, bytes(image_.width()) - gone);
  }
}

}  // namespace pallimo::ui::widgets
