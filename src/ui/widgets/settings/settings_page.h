// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QWidget>
#include <vector>

#include "ui/palette.h"

class QLabel;

namespace pallimo::ui::widgets {

/// A tab's page of the settings: headings and dividers, below each other, between which a page puts
/// its controls. Main thread.
class SettingsPage : public QWidget {
 public:
  explicit SettingsPage(QWidget* parent) : QWidget(parent) {}

  static constexpr int kWidth = 380;
  static constexpr int kMargin = 24;  ///< of headings and dividers
  static constexpr int kIndent = 40;  ///< of controls

  virtual void setColorScheme(ColorScheme scheme);
  /// Shows what is stored at the moment.
  virtual void refresh() = 0;

 protected:
  QLabel* addHeading(const QString& text, int middle);
  void addDivider(int y);
  void paintEvent(QPaintEvent* event) override;

 private:
  ColorScheme scheme_ = ColorScheme::light;
  std::vector<QLabel*> headings_;  ///< children
  std::vector<int> dividers_;
};

}  // namespace pallimo::ui::widgets
