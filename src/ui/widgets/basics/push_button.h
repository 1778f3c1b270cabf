// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QAbstractButton>
#include <QFont>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

enum class ButtonLook {
  accent,  ///< the one thing to do on a screen
  plain
};

/// A button with a text. Mouse, Space and Return press it. The widget has room for the focus ring
/// around what is painted. Main thread.
class PushButton final : public QAbstractButton {
 public:
  PushButton(ButtonLook look, QWidget* parent);

  void setColorScheme(ColorScheme scheme);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QFont textFont() const;

  const ButtonLook look_;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
