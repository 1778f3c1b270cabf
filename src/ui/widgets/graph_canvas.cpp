// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_canvas.h"

#include <QPainter>
#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "ui/widgets/graph_movement.h"

namespace pallimo::ui::widgets {
namespace {

// Points around those that are shown, at the right, above and below. A line that meets the edge of
// an image is cut there, which turns it a little; nothing that reaches a shown pixel comes so far.
constexpr int kMargin = 4;
/// Points that the lines of some columns run over their neighbours, at most.
constexpr int kGuard = 4;
constexpr std::size_t kBytesAPixel = 4;

std::size_t bytes(int pixels) { return static_cast<std::size_t>(pixels) * kBytesAPixel; }

/// A copy of some columns of an image, `left` and `width` in pixels.
class Stripe {
 public:
  Stripe(const QImage& image, int left, int width)
      : left_(left), pixels_(image.copy(left, 0, width, image.height())) {}

  void putBack(QImage& image) const {
    for (int y = 0; y < pixels_.height(); ++y) {
      std::memcpy(image.scanLine(y) + bytes(left_), pixels_.constScanLine(y),
                  bytes(pixels_.width()));
    }
  }

 private:
  const int left_;
  const QImage pixels_;
};

// The box begins at a power of two, and ends before the next one: coordinates have the same number
// of digits behind the point all over it, so that a line is rounded alike wherever it moves. What
// lies at its left is never touched, and takes next to no memory.
int leftOf(int boxPixels) {
  return static_cast<int>(std::bit_ceil(static_cast<unsigned>(boxPixels)));
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
  left_ = leftOf((box.width() + kMargin) * ratio);
  const QSize size(left_ + (box.width() + kMargin) * ratio, (box.height() + 2 * kMargin) * ratio);
  if (image_.size() != size) {
    image_ = QImage(size, QImage::Format_RGB32);
  }
  paint({0, box.width()});
  return Painted::everything;
}

QImage GraphCanvas::image() const {
  const QSize size = box_ * ratio_;
  const int margin = kMargin * ratio_;
  if (size.isEmpty()) {
    return {};
  }
  return {image_.constScanLine(margin) + bytes(left_), size.width(), size.height(),
          image_.bytesPerLine(), image_.format()};
}

// In place, not beside it: at another place a line's coordinates are rounded otherwise, and now and
// then a pixel comes out by one shade lighter. The neighbours, over which the lines run, are put
// back.
void GraphCanvas::paintAgain(Columns columns) {
  columns.begin = std::max(columns.begin, 0);
  const Stripe before(image_, left_ + (columns.begin - kGuard) * ratio_, kGuard * ratio_);
  const Stripe behind(image_, left_ + columns.end * ratio_, kGuard * ratio_);
  paint(columns);
  before.putBack(image_);
  behind.putBack(image_);
}

void GraphCanvas::paint(Columns columns) {
  QPainter painter(&image_);
  painter.translate(left_, kMargin * ratio_);
  painter.scale(ratio_, ratio_);
  paintColumns(painter, graph_, box_, scheme_, columns);
}

void GraphCanvas::moveLeft(int points) {
  const std::size_t gone = bytes(points * ratio_);
  const std::size_t kept = bytes(image_.width() - left_) - gone;
  for (int y = 0; y < image_.height(); ++y) {
    uchar* row = image_.scanLine(y) + bytes(left_);
    std::memmove(row, row + gone, kept);
  }
}

}  // namespace pallimo::ui::widgets
