// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QApplication>
#include <QEvent>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/painted_window.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/live_content.h"

namespace pallimo::benchmarks {

/// The panels in a window that is shown, as one sample after the other reaches them. Makes what is
/// to be shown beforehand, so that `show` is the window's work alone.
class ShownPanels {
 public:
  ShownPanels() {
    content_.setPanels(panelsAt(moment_));
    content_.resize(content_.sizeHint());
    content_.show();
    QCoreApplication::processEvents();
  }

  /// The next sample: other figures, and graphs that have moved on by a point.
  void prepare() { panels_ = panelsAt(++moment_); }

  void show() {
    content_.setPanels(std::move(panels_));
    // What the platform sends when it is ready for the next frame: the window paints at once.
    QEvent frame(QEvent::UpdateRequest);
    QApplication::sendEvent(&content_, &frame);
  }

  /// Whether every sample so far was painted, as new columns.
  bool havePainted() const {
    for (ui::widgets::PanelWidget* panel : content_.panels()) {
      if (panel->graph().counts().moved != static_cast<int>(moment_)) return false;
    }
    return true;
  }

 private:
  static std::vector<ui::Panel> panelsAt(std::size_t moment) {
    std::vector<ui::Panel> panels = moments()[moment];
    int seed = static_cast<int>(moment);
    for (ui::Panel& panel : panels) {
      for (ui::ValueColumn& column : panel.columns) {
        for (ui::PanelValue& value : column.values) {
          seed += 37;
          value.value = std::to_string(10 + seed % 90) + '.' + std::to_string(10 + seed * 7 % 90);
        }
      }
    }
    return panels;
  }

  std::size_t moment_ = 0;
  std::vector<ui::Panel> panels_;
  ui::widgets::LiveContent content_{nullptr, nullptr, nullptr};
};

}  // namespace pallimo::benchmarks
