// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/main_content.h"
#include "ui/main_title_content.h"
#include "ui/more_button_menu.h"
#include "ui/panel.h"

namespace pallimo::ui {

/// All that the main window shows at one moment.
struct MainWindowContent {
  MainContent screen = MainContent::install;
  // Constants of the program. An empty one stands for a part that is not there.
  std::string_view heading;
  std::string_view text;  ///< with the line breaks that it has on the screen
  std::string_view button;
  MainTitleContent title;     ///< the header; not shown by the refusal
  std::vector<Panel> panels;  ///< top to bottom; shown when live, may be missing otherwise
  bool operator==(const MainWindowContent&) const = default;
};

/// What the main window does and looks up when somebody asks for it. All are set; called on the
/// main thread.
struct MainWindowActions {
  std::function<void()> press;               ///< the button of the screen that is shown
  MoreButtonActions menu;                    ///< also what the menu bar's items do
  std::function<bool()> isHelperAuthorized;  ///< whether there is a helper to remove
  std::function<void(const std::string& text)> copyText;  ///< to the clipboard
  std::function<void()> closed;                           ///< the window is about to go
};

}  // namespace pallimo::ui
