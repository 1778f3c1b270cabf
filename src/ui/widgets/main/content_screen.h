// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <string_view>

#include "ui/palette.h"
#include "ui/widgets/basics/drag_area.h"

class QLabel;

namespace pallimo::ui::widgets {

class MessageText;
class PushButton;

/// What the main window shows in place of the panels: a heading, a text and a button, or some of
/// them, each in the middle. Also moves the window. Main thread.
class ContentScreen final : public DragArea {
 public:
  /// `press` is called when the button is pressed.
  ContentScreen(std::function<void()> press, QWidget* parent);

  struct Texts {
    // An empty one is not shown.
    std::string_view heading;
    std::string_view text;
    std::string_view button;
    bool isAlone = false;  ///< nothing stands above: the text is in the window's middle
    bool operator==(const Texts&) const = default;
  };

  void setTexts(const Texts& texts);
  void setColorScheme(ColorScheme scheme);

  /// Depends on the texts.
  QSize sizeHint() const override { return size_; }

 private:
  void layOut();

  Texts texts_;
  QSize size_;
  // Children.
  QLabel* heading_;
  MessageText* text_;
  PushButton* button_;
};

}  // namespace pallimo::ui::widgets
