// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QLabel>
#include <QStringList>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// A text of a few lines, each in the middle; lines that are too long are broken. A line break at
/// its beginning or end is an empty line. A QLabel only to be a piece of text to whoever reads the
/// screen aloud. Main thread.
class MessageText final : public QLabel {
 public:
  explicit MessageText(QWidget* parent);

  static constexpr int kWidth = 300;
  static constexpr int kLineHeight = 18;

  /// Makes the widget as high as the text needs.
  void setMessage(const QString& message);
  void setColor(const Rgba& color);

  /// As they stand on the screen.
  const QStringList& lines() const { return lines_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QStringList lines_;
  Rgba color_;
};

}  // namespace pallimo::ui::widgets
