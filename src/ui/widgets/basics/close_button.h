// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QAbstractButton>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// The small round button that closes a window whose system draws none. Main thread.
class CloseButton final : public QAbstractButton {
 public:
  explicit CloseButton(QWidget* parent);

  static constexpr int kSize = 20;

  void setColorScheme(ColorScheme scheme);

  QSize sizeHint() const override { return {kSize, kSize}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
