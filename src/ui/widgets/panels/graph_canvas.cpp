// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_canvas.h"

#include <QPainter>
#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "ui/widgets/panels/graph_movement.h"

namespace pallimo::ui::widgets {
namespace {

// Points around those that are shown, at the right, above and below. A line that meets the edge of
// an image is cut there, which turns it a little; nothing that reaches a shown pixel comes so far.
constexpr int kMargin = 4;
/// Points that the lines of some columns run over their neighbours, at most.
constexpr int kGuard = 4;
constexpr std::size_t kBytesAPixel = 4;

std::size_t bytes(int pixels) { return static_cast<std::size_t>(pixels) * kBytesAPixel; }

/// Rows of an image's bytes.
struct Rows {
  uchar* first;
  qsizetype bytesPerLine;
  int count;

  uchar* at(int row) const { return first + row * bytesPerLine; }
};

/// A copy of some columns, `left` and `width` in pixels.
class Stripe {
 public:
  Stripe(const Rows& rows, int left, int width)
      : rows_(rows),
        left_(bytes(left)),
        width_(bytes(width)),
        pixels_(width_ * static_cast<std::size_t>(rows.count)) {
    for (int row = 0; row < rows_.count; ++row) std::memcpy(kept(row), shown(row), width_);
  }

  void putBack() {
    for (int row = 0; row < rows_.count; ++row) std::memcpy(shown(row), kept(row), width_);
  }

 private:
  uchar* shown(int row) const { return rows_.at(row) + left_; }
  uchar* kept(int row) { return pixels_.data() + static_cast<std::size_t>(row) * width_; }

  const Rows rows_;
  const std::size_t left_;
  const std::size_t width_;
  std::vector<uchar> pixels_;
};

/// The rows of an image but for the margins above and below.
Rows rowsOf(QImage& image, int margin = 0) {
  return {image.scanLine(margin), image.bytesPerLine(), image.height() - 2 * margin};
}

void fill(const Rows& rows, const QRect& rect, const QColor& color) {
  uchar* const first = rows.at(rect.top()) + bytes(rect.left());
  std::fill_n(reinterpret_cast<QRgb*>(first), rect.width(), color.rgb());
  for (int row = 1; row < rect.height(); ++row) {
    std::memcpy(first + row * rows.bytesPerLine, first, bytes(rect.width()));
  }
}

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
    paintAfterMove(points);
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
  QPainter painter(&image_);
  paint(painter, {0, box.width()});
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
// back; those beyond the box nobody sees, now or later.
void GraphCanvas::paintAfterMove(int points) {
  const Rows rows = rowsOf(image_, kMargin * ratio_);
  const int guard = kGuard * ratio_;
  QPainter painter(&image_);

  const int begin = std::max(0, box_.width() - points - 2 * kLineReach);
  Stripe before(rows, left_ + begin * ratio_ - guard, guard);
  paint(painter, {begin, box_.width()});
  before.putBack();

  // The outline's left edge, which has moved away.
  Stripe behind(rows, left_ + ratio_, guard);
  paint(painter, {0, 1});
  behind.putBack();
}

void GraphCanvas::paint(QPainter& painter, Columns columns) {
  const auto toPixels = QTransform::fromTranslate(left_, kMargin * ratio_).scale(ratio_, ratio_);
  const Rows rows = rowsOf(image_);
  for (const Fill& part : groundOf(graph_, box_, scheme_, columns, toPixels)) {
    fill(rows, part.pixels, part.color);
  }
  painter.setTransform(toPixels);
  paintLines(painter, graph_, box_, scheme_, columns);
}

void GraphCanvas::moveLeft(int points) {
  const std::size_t gone = bytes(points * ratio_);
  const std::size_t kept = bytes(box_.width() * ratio_) - gone;
  const Rows rows = rowsOf(image_, kMargin * ratio_);
  for (int row = 0; row < rows.count; ++row) {
    uchar* const left = rows.at(row) + bytes(left_);
    std::memmove(left, left + gone, kept);
  }
}

}  // namespace pallimo::ui::widgets
