// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <cstdlib>

namespace pallimo::ui::widgets {

inline QPixmap pictureOf(QWidget& widget, double ratio = 2) {
  QPixmap image((QSizeF(widget.size()) * ratio).toSize());
  image.setDevicePixelRatio(ratio);
  widget.render(&image);
  return image;
}

/// Set PALLIMO_PICTURES to a folder to look at what is painted.
inline void keepPicture(QWidget& widget, const QString& name) {
  const QPixmap image = pictureOf(widget);
  if (const char* folder = std::getenv("PALLIMO_PICTURES")) {
    ASSERT_TRUE(image.save(QString::fromLocal8Bit(folder) + '/' + name + ".png"));
  }
}

}  // namespace pallimo::ui::widgets
