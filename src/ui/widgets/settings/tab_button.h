// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QAbstractButton>
#include <string_view>

#include "ui/palette.h"
#include "ui/settings_content.h"

namespace pallimo::ui::widgets {

/// A tab of the settings' toolbar: a symbol over its label. One of its siblings is chosen; the
/// arrow keys choose among them. Main thread.
class TabButton final : public QAbstractButton {
 public:
  /// The tab's texts outlive the button.
  TabButton(const SettingsTabContent& tab, QWidget* parent);

  static constexpr int kHeight = 44;

  void setColorScheme(ColorScheme scheme);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const std::string_view symbol_;
  ColorScheme scheme_ = ColorScheme::light;
};

}  // namespace pallimo::ui::widgets
