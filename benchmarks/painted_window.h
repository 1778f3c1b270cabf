// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QImage>
#include <QPainter>
#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "ui/widgets/panels/graph_canvas.h"
#include "ui/widgets/panels/panel_widget.h"
#include "unit/ui/widgets/panels/example_panels.h"

namespace pallimo::benchmarks {

inline constexpr std::size_t kMoments = 64;

/// Thirteen series of 350 values in four graphs, at moments that follow each other.
inline const std::vector<std::vector<ui::Panel>>& moments() {
  static const auto all = [] {
    std::vector<std::vector<ui::Panel>> panels;
    for (std::size_t moment = 0; moment < kMoments; ++moment) {
      panels.push_back(ui::widgets::examplePanels(static_cast<int>(moment)));
    }
    return panels;
  }();
  return all;
}

inline QSize boxOf(const ui::Panel& panel) { return {316, panel.height > 150 ? 92 : 72}; }

/// The window's image, `ratio` pixels a point.
inline QImage windowImage(int ratio) { return {QSize(380, 700) * ratio, QImage::Format_RGB32}; }

/// The panels on the window's image.
class PaintedWindow {
 public:
  explicit PaintedWindow(int ratio) : screen_(windowImage(ratio)) {
    screen_.setDevicePixelRatio(ratio);
    for (const ui::Panel& panel : moments().front()) {
      panels_.push_back(std::make_unique<ui::widgets::PanelWidget>(panel));
      panels_.back()->resize(panels_.back()->sizeHint());
    }
  }

  /// A change of colours leaves nothing of what was painted before.
  void paintFromNothing() {
    isDark_ = !isDark_;
    int y = 64;
    for (const auto& panel : panels_) {
      panel->setColorScheme(isDark_ ? ui::ColorScheme::dark : ui::ColorScheme::light);
      panel->render(&screen_, QPoint(10, y));
      y += panel->height() + 8;
    }
  }

 private:
  QImage screen_;
  std::vector<std::unique_ptr<ui::widgets::PanelWidget>> panels_;
  bool isDark_ = false;
};

/// The four graphs as they are kept from sample to sample.
class PaintedGraphs {
 public:
  explicit PaintedGraphs(int ratio) : ratio_(ratio), screen_(windowImage(ratio)) {}

  /// With the copy of each graph's box to the window's image.
  void paint(std::size_t moment) {
    for (std::size_t i = 0; i < canvases_.size(); ++i) {
      const ui::Panel& panel = moments()[moment][i];
      canvases_[i].draw(panel.graph, boxOf(panel), ratio_, ui::ColorScheme::dark);
      QPainter painter(&screen_);
      painter.drawImage(QPoint(23, 100 + 150 * static_cast<int>(i)) * ratio_, canvases_[i].image());
    }
  }

 private:
  const int ratio_;
  QImage screen_;
  std::array<ui::widgets::GraphCanvas, 4> canvases_;
};

}  // namespace pallimo::benchmarks
