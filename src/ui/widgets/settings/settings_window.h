// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "base/subscription.h"
#include "ports/main_queue.h"
#include "ports/user_defaults.h"
#include "ui/settings_content.h"
#include "ui/widgets/settings/general_settings_view.h"
#include "ui/widgets/windows/app_window.h"

namespace pallimo::ui::widgets {

class GPUSettingsView;
class SettingsToolbar;

/// The settings: a toolbar with the tabs, below it the page of the chosen one. Every choice is
/// stored at once; a change that somebody else makes shows at once, and what became of the log
/// folder on the disk when the user comes back to the window. Main thread.
class SettingsWindow final : public AppWindow {
 public:
  struct Services {
    // Outlive the window.
    ports::UserDefaults& defaults;
    ports::MainQueue& mainQueue;
    LogFolderServices folders;
    WindowChrome chrome;
  };

  explicit SettingsWindow(Services services);

  static constexpr int kHeight = 242;

  /// Shows the window, before all others and with the keyboard.
  void present();

  SettingsToolbar& toolbar() { return *toolbar_; }
  GeneralSettingsView& general() { return *general_; }
  GPUSettingsView& extra() { return *extra_; }

 protected:
  void showColorScheme() override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void observeSettings();
  void refresh();
  void showSelectedTab();

  const Services services_;
  // Children; the Tab key goes through them in this order.
  SettingsToolbar* toolbar_;
  GeneralSettingsView* general_;
  GPUSettingsView* extra_;

  /// What a change of the settings that was made on another thread finds its way back by.
  const std::shared_ptr<SettingsWindow*> self_;
  base::Subscription changes_;
};

}  // namespace pallimo::ui::widgets
