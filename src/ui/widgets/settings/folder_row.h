// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QIcon>
#include <QLabel>
#include <functional>

#include "ui/palette.h"

namespace pallimo::ui::widgets {

/// A folder: its icon and its path. A path that is too long loses its middle; the tool tip shows
/// all of it. A QLabel only to be a piece of text to whoever reads the screen aloud. Main thread.
class FolderRow final : public QLabel {
 public:
  /// The desktop's icon of the folder of that path; a null one if it has none.
  using Icons = std::function<QIcon(const QString& path)>;

  FolderRow(Icons icons, QWidget* parent);

  static constexpr int kHeight = 18;
  static constexpr int kIconSize = 16;

  /// Also asks for the icon anew: a folder of the same path may look different by now.
  void setFolder(const QString& path);
  void setColorScheme(ColorScheme scheme);

  /// The path as it is painted.
  QString shownPath() const;
  bool isShortened() const { return shownPath() != path_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintFolder(QPainter& painter) const;

  const Icons icons_;
  ColorScheme scheme_ = ColorScheme::light;
  QString path_;
  QIcon icon_;
};

/// The icon that the desktop shows that folder with, or folders at all if it is none that is there;
/// a null one where the desktop has no icons.
QIcon desktopFolderIcon(const QString& path);

}  // namespace pallimo::ui::widgets
