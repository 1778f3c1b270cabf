// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "ui/display_settings.h"
#include "ui/widgets/basics/close_button.h"
#include "ui/widgets/basics/push_button.h"
#include "ui/widgets/settings/choice_box.h"
#include "ui/widgets/settings/gpu_settings_view.h"
#include "ui/widgets/settings/settings_toolbar.h"
#include "ui/widgets/settings/settings_window.h"
#include "ui/widgets/settings/tab_button.h"
#include "ui/widgets/settings/toggle_row.h"
#include "unit/ui/widgets/qt_messages.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {

/// A settings window on settings in memory and on a chooser that answers as the test says.
class SettingsWindowFixture : public testing::Test {
 protected:
  SettingsWindowFixture() { testApplication(); }
  ~SettingsWindowFixture() override {
    window_.reset();
    EXPECT_EQ(QtMessages::unexpected(), QStringList());
  }

  SettingsWindow& window() {
    if (!window_) window_ = std::make_unique<SettingsWindow>(services());
    return *window_;
  }

  SettingsWindow& shown() {
    window().present();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    settle();
    return window();
  }

  SettingsWindow& shownExtra() {
    window().toolbar().selectTab(SettingsTab::extra);
    return shown();
  }

  /// Lets changes of the settings reach the window.
  void settleSettings() {
    queue_.run();
    settle();
  }

  /// The heading of that text on a page.
  static const QLabel& heading(const QWidget& page, const QString& text) {
    for (const auto* label : page.findChildren<QLabel*>()) {
      if (label->text() == text) return *label;
    }
    throw std::runtime_error("no heading " + text.toStdString());
  }

  QString shownFolder() { return window().general().folder().accessibleName(); }
  void pressSelect() {
    QTest::mouseClick(&window().general().select(), Qt::LeftButton);
    settleSettings();
  }
  ToggleRow& toggle(const char* key) { return *window().extra().toggle(key); }

  fakes::MemoryUserDefaults defaults_;
  fakes::ManualMainQueue queue_;
  std::vector<std::string> folders_ = {"/home/me/Desktop"};  ///< those that exist
  std::optional<std::string> modelFolder_;
  std::optional<std::string> desktopFolder_ = "/home/me/Desktop";
  ChooserResult chooserAnswer_;
  std::vector<std::string> choosersOpenedIn_;
  QIcon folderIcon_;

  void endWindow() { window_.reset(); }

 private:
  SettingsWindow::Services services() {
    return {defaults_,
            queue_,
            {[this] { return modelFolder_; }, [this] { return desktopFolder_; },
             [this](const std::string& path) {
               return std::find(folders_.begin(), folders_.end(), path) != folders_.end();
             },
             [this](QWidget&, const std::string& folder) {
               choosersOpenedIn_.push_back(folder);
               return chooserAnswer_;
             },
             [this](const QString&) { return folderIcon_; }},
            framelessChrome()};
  }

  QtMessages messages_;
  std::unique_ptr<SettingsWindow> window_;
};

}  // namespace pallimo::ui::widgets
