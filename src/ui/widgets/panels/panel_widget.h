// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "ui/palette.h"
#include "ui/panel.h"
#include "ui/readout.h"
#include "ui/widgets/panels/panel_frame.h"

namespace pallimo::ui::widgets {

class GraphWidget;
class ModuleTitleRow;
class ValueWidget;

/// A panel: a frame with round corners on the window's ground, in it the title row, the row of
/// values and the graph. Each of them is opaque and repaints itself when what it shows has changed,
/// and only then. Main thread.
class PanelWidget final : public QWidget {
 public:
  /// Answers what the panel tells of the sample at `x` points in a graph's box of that width.
  using ReadoutSource =
      std::function<std::optional<Readout>(double x, double width, const Panel& panel)>;

  /// Without a source nothing is shown under the pointer.
  explicit PanelWidget(Panel panel, ReadoutSource readout = nullptr, QWidget* parent = nullptr);
  ~PanelWidget() override;

  static constexpr int kWidth = 360;

  void setPanel(Panel panel);
  void setColorScheme(ColorScheme scheme);

  const Panel& panel() const { return panel_; }
  GraphWidget& graph() { return *graph_; }
  const std::vector<ValueWidget*>& values() const { return values_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showAll();
  void buildValues();
  void layOut();

  Panel panel_;
  ColorScheme scheme_ = ColorScheme::light;
  PanelFrame frame_;
  // Children.
  ModuleTitleRow* title_;
  std::vector<ValueWidget*> values_;  ///< in reading order
  GraphWidget* graph_;
};

}  // namespace pallimo::ui::widgets
