// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QImage>
#include <QRect>

#include "ui/palette.h"

class QPainter;

namespace pallimo::ui::widgets {

/// A panel's filled and outlined rectangle with round corners, and the window's ground around them:
/// every pixel of the rectangle is painted. The corners are kept as an image, since outlining a
/// whole panel costs as much as writing all its texts. Main thread.
class PanelFrame {
 public:
  static constexpr int kCornerRadius = 10;

  /// `rect` in whole points, at least two corners wide and high.
  void paint(QPainter& painter, const QRect& rect, ColorScheme scheme);

 private:
  void keepCorners(int ratio, ColorScheme scheme);
  void paintCorners(QPainter& painter, const QRect& rect) const;

  QImage corners_;  ///< the four of them without anything between
  int ratio_ = 0;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
