// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <ostream>

#include "ui/widgets/main/main_title_widget.h"
#include "ui/widgets/main/message_text.h"
#include "ui/widgets/panels/value_widget.h"
#include "unit/ui/widgets/main/main_window_fixture.h"
#include "unit/ui/widgets/settings/settings_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

struct Spoken {
  QAccessible::Role role = QAccessible::NoRole;
  QString name;
  bool operator==(const Spoken&) const = default;
};

void PrintTo(const Spoken& spoken, std::ostream* out) {
  *out << static_cast<int>(spoken.role) << " \"" << spoken.name.toStdString() << '"';
}

QAccessibleInterface* interfaceOf(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget);
}

Spoken spoken(QWidget& widget) {
  const auto* interface = interfaceOf(widget);
  return {interface->role(), interface->text(QAccessible::Name)};
}

QString description(QWidget& widget) { return interfaceOf(widget)->text(QAccessible::Description); }

class MainWindowAccessibility : public MainWindowFixture {};

TEST_F(MainWindowAccessibility, NamesWhatTheScreensShow) {
  shownWith(installContent());
  EXPECT_EQ(spoken(*shownButton()), (Spoken{QAccessible::Button, "Install Helper"}));
  EXPECT_EQ(spoken(*visible<MessageText>()),
            (Spoken{QAccessible::StaticText,
                    "Before to start you need to install the Pallimo Powermetrics Helper"}));
  EXPECT_EQ(spoken(*visible<MainTitleWidget>()).role, QAccessible::StaticText);
  EXPECT_EQ(spoken(window().moreButton()).role, QAccessible::Button);
}

TEST_F(MainWindowAccessibility, NamesPanelsAndTheirFigures) {
  shownWith(liveContentAt(0));
  PanelWidget& panel = *window().liveContent().panels()[0];
  EXPECT_EQ(spoken(panel).name, "Power");
  EXPECT_EQ(spoken(*panel.values()[0]), (Spoken{QAccessible::StaticText, "PKG 14.31 watts"}));
}

TEST_F(MainWindowAccessibility, SpeaksNewFigures) {
  shownWith(liveContentAt(0));
  MainWindowContent later = liveContentAt(1);
  later.panels[0].columns[0].values[0].value = "15.00";
  change(later);
  EXPECT_EQ(spoken(*window().liveContent().panels()[0]->values()[0]).name, "PKG 15.00 watts");
}

class SettingsAccessibility : public SettingsWindowFixture {
 protected:
  static bool isChecked(QWidget& widget) { return interfaceOf(widget)->state().checked; }
};

TEST_F(SettingsAccessibility, TabsAreOneOutOfSeveral) {
  shown();
  auto& general = window().toolbar().tabButton(SettingsTab::general);
  auto& extra = window().toolbar().tabButton(SettingsTab::extra);
  EXPECT_EQ(spoken(general), (Spoken{QAccessible::RadioButton, "General"}));
  EXPECT_EQ(spoken(extra), (Spoken{QAccessible::RadioButton, "Extra"}));
  EXPECT_TRUE(isChecked(general));
  EXPECT_FALSE(isChecked(extra));
}

TEST_F(SettingsAccessibility, PickerIsABoxOfChoices) {
  shown();
  auto& picker = window().general().temperature();
  EXPECT_EQ(spoken(picker).role, QAccessible::ComboBox);
  const auto labels = interfaceOf(picker)->relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels[0].first->text(QAccessible::Name), "Temperature:");
  EXPECT_EQ(interfaceOf(picker)->text(QAccessible::Value), "℃ — Celcius");
}

TEST_F(SettingsAccessibility, FolderAndItsButtonAreNamed) {
  shown();
  EXPECT_EQ(spoken(window().general().folder()),
            (Spoken{QAccessible::StaticText, "/home/me/Desktop"}));
  EXPECT_EQ(spoken(window().general().select()), (Spoken{QAccessible::Button, "Select"}));
  EXPECT_EQ(description(window().general().select()), "Log File location:");
  EXPECT_EQ(spoken(window().toolbar().closeButton()), (Spoken{QAccessible::Button, "Close"}));
}

TEST_F(SettingsAccessibility, TogglesAreCheckBoxesOfTheirGroup) {
  defaults_.setBool(settings_key::kGpuFrequency, true);
  shownExtra();
  auto& utilization = toggle(settings_key::kGpuUtilization);
  auto& frequency = toggle(settings_key::kGpuFrequency);
  EXPECT_EQ(spoken(utilization), (Spoken{QAccessible::CheckBox, "Show GPU"}));
  EXPECT_EQ(description(utilization), "Utilization:");
  EXPECT_EQ(spoken(frequency), (Spoken{QAccessible::CheckBox, "Show GPU"}));
  EXPECT_EQ(description(frequency), "Frequency:");
  EXPECT_FALSE(isChecked(utilization));
  EXPECT_TRUE(isChecked(frequency));
}

TEST_F(SettingsAccessibility, TogglesCanBeSwitchedByWhoReadsTheScreen) {
  shownExtra();
  auto* actions = interfaceOf(toggle(settings_key::kGpuFrequency))->actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(
      QTest::qWaitFor([this] { return defaults_.boolForKey(settings_key::kGpuFrequency); }));
}

}  // namespace
}  // namespace pallimo::ui::widgets
