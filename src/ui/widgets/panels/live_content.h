// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ui/palette.h"
#include "ui/panel.h"
#include "ui/widgets/panels/panel_widget.h"

class QAction;

namespace pallimo::ui::widgets {

/// The panels, one below the other, and "Copy Values" as their context menu. Main thread.
class LiveContent final : public QWidget {
 public:
  using CopyText = std::function<void(const std::string& text)>;

  /// Without a read-out nothing is shown under the pointer.
  LiveContent(PanelWidget::ReadoutSource readout, CopyText copyText, QWidget* parent);

  /// Points from the window's edge to the panels, and between them.
  static constexpr int kEdge = 10;
  static constexpr int kGap = 8;

  void setPanels(std::vector<Panel> panels);
  void setColorScheme(ColorScheme scheme);

  const std::vector<PanelWidget*>& panels() const { return panels_; }
  /// Copies the figures that are shown; its key works in the whole window while the panels are
  /// shown.
  QAction* copyValues() const { return copyValues_; }

  QSize sizeHint() const override;

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void buildPanels(std::size_t count);
  void layOut();
  void copy();

  const PanelWidget::ReadoutSource readout_;
  const CopyText copyText_;
  ColorScheme scheme_ = ColorScheme::light;
  // Children.
  QAction* copyValues_;
  std::vector<PanelWidget*> panels_;  ///< top to bottom
};

}  // namespace pallimo::ui::widgets
