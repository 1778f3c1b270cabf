// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window/window_run.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <chrono>
#include <optional>

#include "fakes/fake_platform.h"
#include "scenarios/sample_document.h"
#include "ui/display_settings.h"
#include "ui/widgets/main/content_screen.h"
#include "ui/widgets/main/more_button.h"
#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/live_content.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;

/// The app with its window on a platform of fakes: no sample comes but those that the test sends,
/// so that whatever else the window shows, it shows for another reason.
class WindowRuns : public testing::Test {
 protected:
  WindowRuns() {
    ui::widgets::testApplication();
    platform_.clock.set(std::chrono::system_clock::time_point(1'000'000s));
    general_.emplace(platform_.platform());
    run_.emplace(platform_.platform(), *general_, ui::widgets::framelessChrome());
    ui::widgets::showAndWait(run_->window());
  }

  /// Everything that is queued happens, in the app and in Qt.
  void settle() {
    platform_.mainQueue.run();
    ui::widgets::settle();
  }
  void helperAnswers() {
    fakes::FakeHelperConnection& helper = *platform_.helperConnector.latest();
    helper.replyIsResponding(true);
    helper.replyVersion("1.0");
    settle();
  }
  void helperSends() {
    platform_.helperConnector.latest()->sendResult(scenarios::bytesOf(scenarios::SampleDocument{}));
  }
  void startLive() {
    helperAnswers();
    helperSends();
    settle();
    ASSERT_EQ(panels().size(), 4u);
  }

  const std::vector<ui::widgets::PanelWidget*>& panels() {
    return run_->window().liveContent().panels();
  }
  /// In the menu bar, whose one switch is the log's.
  bool isAnyItemChecked() {
    for (const QMenu* menu : run_->window().mainMenuBar().menus()) {
      for (const QAction* item : menu->actions()) {
        if (item->isChecked()) return true;
      }
    }
    return false;
  }
  const ui::Panel& panel(std::size_t index) { return panels().at(index)->panel(); }
  std::size_t samplesOf(std::size_t index) { return panel(index).graph.datas.at(0).data.size(); }

  fakes::FakePlatform platform_;
  std::optional<GeneralModel> general_;
  std::optional<WindowRun> run_;
};

TEST_F(WindowRuns, ShowThePanelsOnceTheHelperAnswers) {
  EXPECT_FALSE(run_->window().liveContent().isVisible());
  helperAnswers();
  EXPECT_TRUE(run_->window().liveContent().isVisible());
}

TEST_F(WindowRuns, ShowEachSettingAtOnceWithoutASample) {
  startLive();
  platform_.defaults.setInteger(ui::settings_key::kTemperatureUnit, 1);
  settle();
  EXPECT_EQ(panel(2).title.labelRight, "℉");
  platform_.defaults.setBool(ui::settings_key::kGpuFrequency, true);
  settle();
  EXPECT_EQ(panel(1).columns.size(), 3u);
  platform_.defaults.setBool(ui::settings_key::kGpuUtilization, true);
  settle();
  EXPECT_EQ(panel(3).columns.size(), 2u);
  platform_.defaults.setBool(ui::settings_key::kShowEPUtilization, true);
  settle();
  EXPECT_EQ(panel(3).columns[0].values.size(), 2u);
}

TEST_F(WindowRuns, FollowEachModelByItself) {
  startLive();
  modules::MetricModel* const models[] = {
      general_->modelPower().get(), general_->modelFrequency().get(),
      general_->modelTemperature().get(), general_->modelUtilization().get()};
  for (std::size_t index = 0; index < 4; ++index) {
    ASSERT_EQ(samplesOf(index), 1u) << index;
    models[index]->clearData();
    settle();
    EXPECT_EQ(samplesOf(index), 0u) << index;
  }
}

TEST_F(WindowRuns, FollowTheLogInTheirMenus) {
  startLive();
  EXPECT_FALSE(isAnyItemChecked());
  general_->logfileModel()->setLogEnabled(true);
  settle();
  EXPECT_TRUE(isAnyItemChecked());
}

/// By the menu's own model: the main content's says nothing here.
TEST_F(WindowRuns, FollowTheHelperInTheOpenMoreMenu) {
  QTest::mouseClick(&run_->window().moreButton(), Qt::LeftButton);
  ui::widgets::settle();
  const QMenu* const menu = run_->window().moreButton().menu();
  ASSERT_NE(menu, nullptr);
  const QAction* const uninstall = menu->actions().at(1);
  EXPECT_FALSE(uninstall->isEnabled());
  general_->xpcmanager()->setContentModelDelegate({});
  platform_.notifications.post(base::notification::kXPCDidInstall);
  settle();
  EXPECT_TRUE(uninstall->isEnabled());
}

TEST_F(WindowRuns, TellTheAgeOfTheSampleThatIsShown) {
  startLive();
  ui::widgets::GraphWidget& graph = panels()[0]->graph();
  platform_.clock.advance(5s);
  QTest::mouseMove(&graph, QPoint(graph.box().right() + 1, 40));
  ui::widgets::settle();
  EXPECT_EQ(graph.overlay().readout().age, "5 s ago");
  // The next sample is there, but the window has not come to show it.
  helperSends();
  QTest::mouseMove(&graph, QPoint(graph.box().right() + 1, 41));
  ui::widgets::settle();
  EXPECT_EQ(graph.overlay().readout().age, "5 s ago");
  settle();
  EXPECT_EQ(graph.overlay().readout().age, "0 s ago");
}

}  // namespace
}  // namespace pallimo::app
