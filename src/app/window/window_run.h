// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <vector>

#include "app/models/content_view.h"
#include "app/models/general_model.h"
#include "app/start/platform.h"
#include "base/subscription.h"
#include "ui/sample_times.h"
#include "ui/widgets/main/main_window.h"
#include "ui/widgets/settings/settings_window.h"
#include "ui/widgets/windows/window_chrome.h"
#include "ui/widgets/windows/window_rules.h"

namespace pallimo::app {

/// A run with a window: joins models, settings and the app's actions to the two windows. Main
/// thread; needs a QApplication. Platform and model outlive it.
///
/// The settings go with the main window, and with the last window the program ends. When its event
/// loop ends, the helper is closed: whatever comes after that loop may never be reached, since a
/// session that ends need not wait for it.
class WindowRun {
 public:
  WindowRun(const Platform& platform, GeneralModel& general, ui::widgets::WindowChrome chrome);
  ~WindowRun();
  WindowRun(const WindowRun&) = delete;
  WindowRun& operator=(const WindowRun&) = delete;

  ui::widgets::MainWindow& window() { return window_; }
  ui::widgets::SettingsWindow& settings() { return settings_; }

 private:
  ui::widgets::MainWindow::Services windowServices();
  ui::widgets::SettingsWindow::Services settingsServices() const;
  ui::MainWindowActions actions();
  void follow();
  void followSamples();
  void closeHelperAtTheEnd();

  const Platform platform_;
  const ui::widgets::WindowChrome chrome_;
  GeneralModel& general_;
  ContentView view_;
  /// Written on the delivery thread, which may outlive the run.
  const std::shared_ptr<ui::SampleTimes> times_;
  /// Of the samples that the window shows.
  std::vector<ui::SampleTimes::TimePoint> shownTimes_;
  const ui::widgets::WindowRules rules_;
  ui::widgets::MainWindow window_;
  ui::widgets::SettingsWindow settings_;
  /// What other threads find the window by, on the main queue; nullptr once it is gone.
  const std::shared_ptr<ui::widgets::MainWindow*> shown_;
  std::vector<base::Subscription> subscriptions_;
};

}  // namespace pallimo::app
