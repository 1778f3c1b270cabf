// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QWidget>
#include <optional>

#include "ui/palette.h"
#include "ui/widgets/windows/window_chrome.h"

namespace pallimo::ui::widgets {

/// What the app's windows have in common: no title bar, the colour scheme and a ground in its
/// colour. Main thread.
class AppWindow : public QWidget {
 public:
  /// Takes the chrome's flags; its rules are applied to all windows from one place.
  explicit AppWindow(const WindowChrome& chrome);

  /// The system's scheme at the moment, or the one that was set.
  ColorScheme colorScheme() const;
  /// Holds against the system's until nothing is set.
  void setColorScheme(std::optional<ColorScheme> scheme);

 protected:
  /// Hands the scheme to all that is painted. Called when the scheme changes; a window calls
  /// it itself when it is made.
  virtual void showColorScheme() = 0;

  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void followColorScheme();

  std::optional<ColorScheme> chosen_;
  ColorScheme shown_;
};

/// The scheme that a palette of the system's goes with: dark when its windows are.
ColorScheme schemeOf(const QPalette& palette);

}  // namespace pallimo::ui::widgets
