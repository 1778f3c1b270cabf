// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/gpu_settings_view.h"

#include <QSignalBlocker>

#include "ui/settings_content.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/text.h"
#include "ui/widgets/settings/toggle_row.h"

namespace pallimo::ui::widgets {
namespace {

// From one middle to the next one below it.
constexpr int kFirstHeading = 24;
constexpr int kHeadingToToggle = 24;
constexpr int kToggleToToggle = ToggleRow::kHeight;
constexpr int kToggleToDivider = 24;
constexpr int kDividerToHeading = 22;

}  // namespace

GPUSettingsView::GPUSettingsView(ports::UserDefaults& defaults, QWidget* parent)
    : SettingsPage(parent), defaults_(defaults) {
  int y = kFirstHeading;
  for (const SettingsGroup& group : extraSettings()) {
    if (!toggles_.empty()) {
      y += kToggleToDivider;
      addDivider(y);
      y += kDividerToHeading;
    }
    addHeading(toText(group.heading), y);
    y += kHeadingToToggle;
    for (const SettingsToggle& toggle : group.toggles) {
      const bool isFirst = &toggle == group.toggles.data();
      y += isFirst ? 0 : kToggleToToggle;
      addToggle(toText(toggle.label), toText(group.heading), toggle.key, y);
    }
  }
}

void GPUSettingsView::addToggle(const QString& label, const QString& group, const char* key,
                                int middle) {
  auto* row = new ToggleRow(label, this);
  // Two toggles have the same label.
  row->setAccessibleDescription(group);
  row->setGeometry(kIndent, middle - ToggleRow::kHeight / 2,
                   kWidth - kMargin - kIndent + kFocusRing, ToggleRow::kHeight);
  connect(row, &QAbstractButton::toggled, this,
          [this, key](bool isOn) { defaults_.setBool(key, isOn); });
  toggles_.push_back({key, row});
}

void GPUSettingsView::setColorScheme(ColorScheme scheme) {
  SettingsPage::setColorScheme(scheme);
  for (const Toggle& toggle : toggles_) toggle.row->setColorScheme(scheme);
}

void GPUSettingsView::refresh() {
  for (const Toggle& toggle : toggles_) {
    const QSignalBlocker onlyShown(toggle.row);
    toggle.row->setChecked(defaults_.boolForKey(toggle.key));
  }
}

ToggleRow* GPUSettingsView::toggle(std::string_view key) const {
  for (const Toggle& toggle : toggles_) {
    if (key == toggle.key) return toggle.row;
  }
  return nullptr;
}

}  // namespace pallimo::ui::widgets
