// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QAbstractButton>
#include <functional>
#include <vector>

#include "ui/more_button_menu.h"
#include "ui/palette.h"

class QMenu;

namespace pallimo::ui::widgets {

/// The small button with the three dots that opens the app's menu, or closes it when it is open.
/// Lights up under the pointer; mouse, Space, Return and the down key open the menu. Focus shows
/// when the keyboard brought it. Main thread.
class MoreButton final : public QAbstractButton {
 public:
  /// The menu's rows as they are at the moment; asked each time the menu opens or is refreshed.
  using Rows = std::function<std::vector<MenuItem>()>;

  explicit MoreButton(Rows rows, QWidget* parent = nullptr);

  static constexpr QSize kSize{26, 20};

  void setColorScheme(ColorScheme scheme);

  /// Brings an open menu up to date where it stands, so that what can be chosen follows the
  /// helper's state; else nothing.
  void refreshMenu();

  /// The menu while it is open, else null.
  QMenu* menu() const { return menu_; }

  QSize sizeHint() const override { return kSize; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void toggleMenu();

  Rows rows_;
  ColorScheme scheme_ = ColorScheme::light;
  bool showsFocus_ = false;
  QMenu* menu_ = nullptr;  ///< while it is open
};

}  // namespace pallimo::ui::widgets
