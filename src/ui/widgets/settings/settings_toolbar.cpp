// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/settings_toolbar.h"

#include <QPainter>

#include "ui/widgets/basics/close_button.h"
#include "ui/widgets/basics/colors.h"
#include "ui/widgets/settings/tab_button.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kTabTop = 11;
constexpr int kTabGap = 7;
constexpr QPoint kClosePlace(10, 10);

}  // namespace

SettingsToolbar::SettingsToolbar(std::function<void()> tabChanged, QWidget* window)
    : DragArea(window), close_(new CloseButton(this)) {
  setFixedSize(window->width(), kHeight);
  close_->setGeometry(QRect(kClosePlace, close_->sizeHint()));
  connect(close_, &QAbstractButton::clicked, window, &QWidget::close);
  addTabs(tabChanged);
}

void SettingsToolbar::addTabs(const std::function<void()>& tabChanged) {
  int widthOfAll = 0;
  for (const SettingsTabContent& content : kSettingsTabs) {
    tabs_.push_back(new TabButton(content, this));
    widthOfAll += tabs_.back()->sizeHint().width() + (tabs_.size() > 1 ? kTabGap : 0);
    connect(tabs_.back(), &QAbstractButton::toggled, this, [tabChanged](bool isChosen) {
      if (isChosen) tabChanged();
    });
  }
  int x = (width() - widthOfAll) / 2;
  for (TabButton* tab : tabs_) {
    tab->setGeometry(QRect(QPoint(x, kTabTop), tab->sizeHint()));
    x += tab->width() + kTabGap;
  }
}

SettingsTab SettingsToolbar::selectedTab() const {
  return tabs_[static_cast<std::size_t>(SettingsTab::extra)]->isChecked() ? SettingsTab::extra
                                                                          : SettingsTab::general;
}

void SettingsToolbar::selectTab(SettingsTab tab) { tabButton(tab).setChecked(true); }

void SettingsToolbar::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  close_->setColorScheme(scheme);
  for (TabButton* tab : tabs_) tab->setColorScheme(scheme);
  update();
}

void SettingsToolbar::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(0, kHeight - 1, width(), 1, toColor(colorsOf(scheme_).divider));
}

}  // namespace pallimo::ui::widgets
