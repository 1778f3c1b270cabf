// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "ui/palette.h"
#include "ui/settings_content.h"
#include "ui/widgets/basics/drag_area.h"

namespace pallimo::ui::widgets {

class CloseButton;
class TabButton;

/// The upper edge of the settings window: its tabs, a button that closes the window, and room to
/// take hold of it. Main thread.
class SettingsToolbar final : public DragArea {
 public:
  /// `tabChanged` is called when another tab is chosen, by whomever.
  SettingsToolbar(std::function<void()> tabChanged, QWidget* window);

  static constexpr int kHeight = 64;

  SettingsTab selectedTab() const;
  void selectTab(SettingsTab tab);
  void setColorScheme(ColorScheme scheme);

  TabButton& tabButton(SettingsTab tab) { return *tabs_[static_cast<std::size_t>(tab)]; }
  CloseButton& closeButton() { return *close_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void addTabs(const std::function<void()>& tabChanged);

  ColorScheme scheme_ = ColorScheme::light;
  // Children; tabs in the order of their enumeration.
  CloseButton* close_;
  std::vector<TabButton*> tabs_;
};

}  // namespace pallimo::ui::widgets
