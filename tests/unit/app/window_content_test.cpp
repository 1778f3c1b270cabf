// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window_content.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/notification_centre.h"
#include "fakes/fake_platform.h"

namespace pallimo::app {
namespace {

class WindowContentTest : public testing::Test {
 protected:
  void start() {
    general_.emplace(platform_.platform());
    view_.emplace(platform_.mainQueue, *general_);
    platform_.mainQueue.run();
  }
  ~WindowContentTest() override { platform_.mainQueue.run(); }

  ui::MainWindowContent content() {
    return windowContent(*view_, *general_, platform_.defaults, platform_.desktop.randomNumbers);
  }
  void helperIsInstalled() {
    platform_.notifications.post(base::notification::kXPCDidInstall);
    platform_.mainQueue.run();
  }
  std::vector<std::string> panelTitles() {
    std::vector<std::string> titles;
    for (const ui::Panel& panel : content().panels) titles.push_back(panel.title.labelLeft);
    return titles;
  }

  fakes::FakePlatform platform_;
  std::optional<GeneralModel> general_;
  std::optional<ContentView> view_;
};

TEST_F(WindowContentTest, WithoutAHelperIsTheInstallScreen) {
  start();
  EXPECT_EQ(content().screen, ui::MainContent::install);
  EXPECT_EQ(content().heading, "Welcome");
  EXPECT_EQ(content().button, "Install Helper");
  EXPECT_TRUE(content().panels.empty());
}

TEST_F(WindowContentTest, OnAnotherProcessorIsTheRefusal) {
  platform_.setCpuType(7);
  start();
  EXPECT_EQ(content().screen, ui::MainContent::refusal);
  EXPECT_EQ(content().text,
            "This app is only for Apple Silicon Cores.\nIt is not working on Intel Cores");
  EXPECT_EQ(content().button, "");
}

TEST_F(WindowContentTest, NamesTheMachine) {
  start();
  EXPECT_EQ(content().title[0].name.text, "Apple M2 Pro");
}

TEST_F(WindowContentTest, WithAUsableHelperHasTheFourPanelsInOrder) {
  start();
  helperIsInstalled();
  EXPECT_EQ(content().screen, ui::MainContent::live);
  EXPECT_EQ(panelTitles(),
            (std::vector<std::string>{"Power", "Frequency", "Temperature", "Utilization"}));
}

TEST_F(WindowContentTest, FollowsTheSettingsAtOnce) {
  start();
  helperIsInstalled();
  EXPECT_EQ(content().panels[2].title.labelRight, "℃");
  platform_.defaults.setInteger("temperatureUnit", 1);
  EXPECT_EQ(content().panels[2].title.labelRight, "℉");
  EXPECT_EQ(content().panels[1].columns.size(), 2u);
  platform_.defaults.setBool("gpuFrequency", true);
  EXPECT_EQ(content().panels[1].columns.size(), 3u);
}

}  // namespace
}  // namespace pallimo::app
