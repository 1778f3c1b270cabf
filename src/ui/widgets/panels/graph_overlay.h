// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QRect>
#include <QWidget>

#include "ui/palette.h"
#include "ui/readout.h"

namespace pallimo::ui::widgets {

/// What lies over a graph while the pointer or the keyboard does: a fine vertical line at a sample,
/// and beside it the sample's figures in their series' colours; a ring when it is the keyboard.
/// Covers its parent, lets the pointer through and leaves the graph's image alone. Main thread.
class GraphOverlay final : public QWidget {
 public:
  explicit GraphOverlay(QWidget* parent);

  /// `box` is the graph's box in the parent. Without entries there is no line.
  void showReadout(const Readout& readout, const QRect& box, ColorScheme scheme);

  /// To be seen from the next read-out on.
  void setFocusRing(bool isOn) { hasFocusRing_ = isOn; }

  /// What was shown last, also after it was hidden.
  const Readout& readout() const { return readout_; }
  /// Where the figures stand: beside the line, on the side that has room.
  QRect bubble() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSize bubbleSize() const;
  void paintReadout(QPainter& painter) const;
  void paintEntries(QPainter& painter) const;

  Readout readout_;
  QRect box_;
  bool hasFocusRing_ = false;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
