// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QImage>
#include <QSize>

#include "ui/graph_data.h"
#include "ui/palette.h"
#include "ui/widgets/panels/graph_painting.h"

class QPainter;

namespace pallimo::ui::widgets {

/// An image of a graph's box, kept from one sample to the next: when the graph has only moved to
/// the left, the image is moved and nothing but its new columns is painted. What comes out is the
/// same to the last bit as painting everything. Main thread.
class GraphCanvas {
 public:
  /// What a call of `draw` had to paint.
  enum class Painted { nothing, newColumns, everything };

  /// Makes the image one of `graph`: `box` points in size, `ratio` (1 or more) pixels a point.
  Painted draw(const GraphView& graph, QSize box, int ratio, ColorScheme scheme);

  /// Opaque, exactly the box, in pixels; its device pixel ratio is 1. A view of what the canvas
  /// keeps: good until the next `draw`.
  QImage image() const;

 private:
  void moveLeft(int points);
  void paintAfterMove(int points);
  void paint(QPainter& painter, Columns columns);

  // What the image shows.
  GraphView graph_;
  QSize box_;
  int ratio_ = 0;
  ColorScheme scheme_ = ColorScheme::light;
  QImage image_;  ///< the box and a margin, of which nothing is shown
  int left_ = 0;  ///< where the box begins in it, pixels
};

}  // namespace pallimo::ui::widgets
