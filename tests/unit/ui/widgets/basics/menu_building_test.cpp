// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/menu_building.h"

#include <gtest/gtest.h>

#include <QAction>

#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class MenuBuilding : public testing::Test {
 protected:
  MenuBuilding() : application_(testApplication()) {}

  std::vector<MenuItem> rows() {
    MenuItem command{.title = "Command", .action = [this] { ++commands_; }};
    command.isDisabled = isDisabled_;
    MenuItem toggle{.title = "Switch"};
    toggle.isChecked = SwitchBinding{[this] { return isOn_; }, [this](bool on) { isOn_ = on; }};
    return {command, MenuItem{.title = "-"}, toggle};
  }
  void fill() { fillMenu(menu_, rows(), ColorScheme::light); }
  QAction* row(int index) { return menu_.actions().at(index); }

  QApplication& application_;
  bool isDisabled_ = false;
  bool isOn_ = false;
  int commands_ = 0;
  QMenu menu_;
};

TEST_F(MenuBuilding, MakesARowOfEachKind) {
  fill();
  ASSERT_EQ(menu_.actions().size(), 3);
  EXPECT_EQ(row(0)->text(), "Command");
  EXPECT_FALSE(row(0)->isCheckable());
  EXPECT_TRUE(row(1)->isSeparator());
  EXPECT_EQ(row(2)->text(), "Switch");
  EXPECT_TRUE(row(2)->isCheckable());
}

TEST_F(MenuBuilding, RunsACommand) {
  fill();
  row(0)->trigger();
  EXPECT_EQ(commands_, 1);
}

TEST_F(MenuBuilding, SwitchesWhatTheSwitchIsTiedTo) {
  fill();
  row(2)->trigger();
  EXPECT_TRUE(isOn_);
  row(2)->trigger();
  EXPECT_FALSE(isOn_);
}

TEST_F(MenuBuilding, ShowsASwitchThatIsOnWithATick) {
  isOn_ = true;
  fill();
  EXPECT_TRUE(row(2)->isChecked());
  EXPECT_FALSE(row(2)->icon().isNull());
  isOn_ = false;
  refreshMenu(menu_, rows(), ColorScheme::light);
  EXPECT_FALSE(row(2)->isChecked());
  EXPECT_TRUE(row(2)->icon().isNull());
}

TEST_F(MenuBuilding, LeavesATickThatIsThereAlone) {
  isOn_ = true;
  fill();
  int changes = 0;
  QObject::connect(row(2), &QAction::changed, &menu_, [&changes] { ++changes; });
  refreshMenu(menu_, rows(), ColorScheme::light);
  EXPECT_EQ(changes, 0);
}

TEST_F(MenuBuilding, ASwitchThatIsRefusedStaysAsItIs) {
  MenuItem toggle{.title = "Switch"};
  toggle.isChecked = SwitchBinding{[] { return false; }, [](bool) {}};
  fillMenu(menu_, {toggle}, ColorScheme::light);
  row(0)->trigger();
  EXPECT_FALSE(row(0)->isChecked());
}

TEST_F(MenuBuilding, GreysOutWhatIsDisabled) {
  isDisabled_ = true;
  fill();
  EXPECT_FALSE(row(0)->isEnabled());
}

TEST_F(MenuBuilding, RefreshesTheRowsThatAreThere) {
  fill();
  QAction* command = row(0);
  isDisabled_ = true;
  refreshMenu(menu_, rows(), ColorScheme::light);
  EXPECT_EQ(row(0), command);
  EXPECT_FALSE(command->isEnabled());
}

TEST_F(MenuBuilding, ReplacesRowsOfAnotherNumber) {
  fill();
  auto fewer = rows();
  fewer.pop_back();
  refreshMenu(menu_, fewer, ColorScheme::light);
  EXPECT_EQ(menu_.actions().size(), 2);
}

TEST_F(MenuBuilding, ReplacesWhatWasThereWhenItFills) {
  fill();
  fill();
  EXPECT_EQ(menu_.actions().size(), 3);
}

}  // namespace
}  // namespace pallimo::ui::widgets
