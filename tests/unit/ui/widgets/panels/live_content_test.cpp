// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/live_content.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QContextMenuEvent>
#include <chrono>

#include "ui/copy_values.h"
#include "ui/readout.h"
#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_widget.h"
#include "unit/ui/widgets/main/main_window_fixture.h"
#include "unit/ui/widgets/panels/kept_picture.h"

namespace pallimo::ui::widgets {
namespace {

class LiveContentTest : public MainWindowFixture {
 protected:
  QMenu* openContextMenu() {
    PanelWidget* panel = window().liveContent().panels()[1];
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20),
                            panel->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(panel->childAt(20, 20), &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
};

TEST_F(LiveContentTest, OffersToCopyTheValuesOverThePanels) {
  shownWith(liveContentAt(0));
  QMenu* menu = openContextMenu();
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(menu->actions()[0]->text(), "Copy Values");
  QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                    menu->actionGeometry(menu->actions()[0]).center());
  EXPECT_EQ(done_, std::vector<std::string>{copyValuesText(examplePanels(0))});
}

TEST_F(LiveContentTest, CopiesTheValuesThatAreShownWhenTheyAreAskedFor) {
  shownWith(liveContentAt(0));
  QMenu* menu = openContextMenu();
  MainWindowContent later = liveContentAt(0);
  later.panels[0].columns[0].values[0].value = "99.99";
  change(later);
  menu->actions()[0]->trigger();
  menu->close();
  ASSERT_EQ(done_.size(), 1u);
  EXPECT_EQ(done_[0], copyValuesText(later.panels));
}

TEST_F(LiveContentTest, LooksTheSameWhateverSettingsItCameFrom) {
  std::vector<Panel> fahrenheit = examplePanels(3);
  fahrenheit[2].title.labelRight = "℉";
  fahrenheit[2].graph.axisLabels = {"250", "215", "180", "145", "110", "75"};
  std::vector<Panel> pair = examplePanels(5);
  pair[3] = examplePairPanel(5);
  std::vector<Panel> cleared = examplePanels(6);
  for (Panel& panel : cleared) {
    for (GraphData& series : panel.graph.datas) series.data.clear();
  }
  const std::vector<std::pair<std::vector<Panel>, ColorScheme>> steps = {
      {examplePanels(1), ColorScheme::light},
      {examplePanels(2), ColorScheme::light},
      {fahrenheit, ColorScheme::light},
      {examplePanels(4), ColorScheme::dark},
      {pair, ColorScheme::dark},
      {cleared, ColorScheme::light},
      {examplePanels(7), ColorScheme::light}};
  for (const double ratio : {1.0, 2.0}) {
    LiveContent changed(nullptr, nullptr, nullptr);
    for (const auto& [panels, scheme] : steps) {
      LiveContent anew(nullptr, nullptr, nullptr);
      for (LiveContent* content : {&changed, &anew}) {
        content->setColorScheme(scheme);
        content->setPanels(panels);
        content->resize(content->sizeHint());
      }
      ASSERT_EQ(pictureOf(changed, ratio).toImage(), pictureOf(anew, ratio).toImage())
          << panels[2].title.labelRight << " at " << ratio;
    }
  }
}

TEST_F(LiveContentTest, CopiesByKeyWhileThePanelsAreShown) {
  shownWith(liveContentAt(0));
  QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(done_.size(), 1u);
  change(installContent());
  QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(done_.size(), 1u);
}

TEST_F(LiveContentTest, ShowsWhatASourceTellsOfTheSampleUnderThePointer) {
  std::vector<SampleTimes::TimePoint> times;
  const auto now = SampleTimes::TimePoint(std::chrono::hours(1));
  for (int ago = 0; ago < 350; ++ago) times.push_back(now - std::chrono::seconds(ago));
  std::optional<Readout> told;
  readout_ = [&](double x, double width, const Panel& panel) {
    told = readoutAt(x, width, panel, times, now);
    return told;
  };
  MainWindowContent content = liveContentAt(0);
  content.panels[0].graph.datas.resize(1);
  content.panels[0].seriesTexts = {
      {"CPU", ValueFormat::twoDecimals, std::vector<double>(kGraphLength, 7.5)}};
  shownWith(content);
  GraphWidget& graph = window().liveContent().panels()[0]->graph();
  QTest::mouseMove(&graph, QPoint(graph.box().right() - 11, 40));
  settle();
  EXPECT_TRUE(graph.overlay().isVisible());
  ASSERT_TRUE(told);
  EXPECT_EQ(told->age, "12 s ago");
  EXPECT_EQ(told->entries, (std::vector<ReadoutEntry>{{"CPU", "7.50", SeriesColor::cyan}}));
}

TEST_F(LiveContentTest, ShowsNothingUnderThePointerWithoutASource) {
  shownWith(liveContentAt(0));
  GraphWidget& graph = window().liveContent().panels()[0]->graph();
  QTest::mouseMove(&graph, QPoint(50, 40));
  settle();
  EXPECT_FALSE(graph.overlay().isVisible());
}

TEST_F(LiveContentTest, TakesAnyNumberOfPanels) {
  shownWith(liveContentAt(0));
  MainWindowContent one = liveContentAt(0);
  one.panels.resize(1);
  change(one);
  EXPECT_EQ(window().height(), 64 + 160 + 10);
  EXPECT_EQ(window().liveContent().panels().size(), 1u);
}

TEST_F(LiveContentTest, RepaintsNothingButFiguresAndGraphsWhenFiguresChange) {
  shownWith(liveContentAt(0));
  // A window that is new to the screen may be painted once more.
  change(liveContentAt(1));
  PaintLog content(window().liveContent());
  PaintLog panel(*window().liveContent().panels()[0]);
  change(liveContentAt(2));
  EXPECT_TRUE(content.painted().empty());
  EXPECT_TRUE(panel.painted().empty());
}

}  // namespace
}  // namespace pallimo::ui::widgets
