// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QLabel>

#include "ui/main_title_content.h"
#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// The two lines above the panels: chip and GPU with their cores. A line that is too long for the
/// widget is written smaller, down to half its size. A QLabel only to be a piece of text to whoever
/// reads the screen aloud. Main thread.
class MainTitleWidget final : public QLabel {
 public:
  explicit MainTitleWidget(MainTitleContent content, QWidget* parent = nullptr);

  void setContent(const MainTitleContent& content);
  void setColorScheme(ColorScheme scheme);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintLine(QPainter& painter, const MainTitleLine& line, double baseline) const;

  MainTitleContent content_;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
