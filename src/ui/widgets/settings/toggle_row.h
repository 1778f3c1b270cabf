// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QAbstractButton>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// A label with a switch at the right; a press anywhere on it switches. A check box to whoever
/// reads the screen aloud. The widget has room for the focus ring around the switch. Main thread.
class ToggleRow final : public QAbstractButton {
 public:
  ToggleRow(const QString& label, QWidget* parent);

  static constexpr int kHeight = 26;

  void setColorScheme(ColorScheme scheme);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
