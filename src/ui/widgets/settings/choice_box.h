// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QComboBox>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// One of a few choices, which a list of them offers. Its wheel does nothing: a page that is
/// scrolled over it must not change a setting. The widget has room for the focus ring around what
/// is painted. Main thread.
class ChoiceBox final : public QComboBox {
 public:
  explicit ChoiceBox(QWidget* parent);

  void setColorScheme(ColorScheme scheme);

  /// Wide enough for the longest choice.
  QSize sizeHint() const override;
  void showPopup() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
