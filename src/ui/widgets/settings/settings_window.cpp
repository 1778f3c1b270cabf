// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/settings_window.h"

#include <QKeyEvent>
#include <utility>

#include "ui/widgets/settings/gpu_settings_view.h"
#include "ui/widgets/settings/settings_toolbar.h"

namespace pallimo::ui::widgets {

SettingsWindow::SettingsWindow(Services services)
    : AppWindow(services.chrome),
      services_(std::move(services)),
      toolbar_(nullptr),
      general_(nullptr),
      extra_(nullptr),
      self_(std::make_shared<SettingsWindow*>(this)) {
  setWindowTitle(QStringLiteral("Settings"));
  setFixedSize(SettingsPage::kWidth, kHeight);
  toolbar_ = new SettingsToolbar([this] { showSelectedTab(); }, this);
  general_ = new GeneralSettingsView(services_.defaults, services_.folders, this);
  extra_ = new GPUSettingsView(services_.defaults, this);
  const QRect page(0, SettingsToolbar::kHeight, width(), height() - SettingsToolbar::kHeight);
  general_->setGeometry(page);
  extra_->setGeometry(page);
  // The window itself has the keyboard until Tab asks for a control.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  toolbar_->selectTab(SettingsTab::general);
  showColorScheme();
  observeSettings();
}

void SettingsWindow::observeSettings() {
  changes_ = services_.defaults.observeChanges(
      [&queue = services_.mainQueue, window = std::weak_ptr(self_)] {
        queue.async([window] {
          if (const auto self = window.lock()) (*self)->refresh();
        });
      });
}

void SettingsWindow::present() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void SettingsWindow::showSelectedTab() {
  const bool isGeneral = toolbar_->selectedTab() == SettingsTab::general;
  general_->setVisible(isGeneral);
  extra_->setVisible(!isGeneral);
}

void SettingsWindow::refresh() {
  if (isVisible()) {
    general_->refresh();
    extra_->refresh();
  }
}

void SettingsWindow::showColorScheme() {
  toolbar_->setColorScheme(colorScheme());
  general_->setColorScheme(colorScheme());
  extra_->setColorScheme(colorScheme());
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
    close();
    return;
  }
  AppWindow::keyPressEvent(event);
}

void SettingsWindow::showEvent(QShowEvent* event) {
  // Before the first picture: what was stored while the window was hidden passed it by.
  general_->refresh();
  extra_->refresh();
  AppWindow::showEvent(event);
}

void SettingsWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    refresh();
  }
  AppWindow::changeEvent(event);
}

}  // namespace pallimo::ui::widgets
