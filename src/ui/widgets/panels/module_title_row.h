// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QLabel>

#include "ui/palette.h"
#include "ui/panel.h"

namespace pallimo::ui::widgets {

/// A panel's title and, at the right, its unit; the help shows as a tool tip. A QLabel only to be a
/// piece of text to whoever reads the screen aloud. Main thread.
class ModuleTitleRow final : public QLabel {
 public:
  explicit ModuleTitleRow(QWidget* parent);

  static constexpr int kHeight = 18;

  void setTitle(const ModuleTitle& title);
  void setColorScheme(ColorScheme scheme);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ModuleTitle title_;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
