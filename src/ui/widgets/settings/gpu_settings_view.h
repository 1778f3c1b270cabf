// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>
#include <vector>

#include "ports/user_defaults.h"
#include "ui/widgets/settings/settings_page.h"

namespace pallimo::ui::widgets {

class ToggleRow;

/// The tab "Extra": which rows the panels show beside those that they always do. Main thread.
class GPUSettingsView final : public SettingsPage {
 public:
  /// The defaults outlive the view.
  GPUSettingsView(ports::UserDefaults& defaults, QWidget* parent);

  void setColorScheme(ColorScheme scheme) override;
  void refresh() override;

  /// The toggle of that key; null for another key.
  ToggleRow* toggle(std::string_view key) const;

 private:
  struct Toggle {
    const char* key;
    ToggleRow* row;  ///< a child
  };

  void addToggle(const QString& label, const QString& group, const char* key, int middle);

  ports::UserDefaults& defaults_;
  std::vector<Toggle> toggles_;
};

}  // namespace pallimo::ui::widgets
