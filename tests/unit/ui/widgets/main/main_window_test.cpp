// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/main_window.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "ui/widgets/main/content_screen.h"
#include "ui/widgets/main/main_title_widget.h"
#include "ui/widgets/main/message_text.h"
#include "ui/widgets/windows/window_rules.h"
#include "unit/ui/widgets/main/main_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

class MainWindowTest : public MainWindowFixture {
 protected:
  QStringList visibleTexts() {
    QStringList texts;
    for (const auto* label : window().findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) texts.append(label->text());
    }
    return texts;
  }
};

TEST_F(MainWindowTest, ShowsTheRefusalAlone) {
  shownWith(refusalContent());
  EXPECT_EQ(visibleTexts(),
            QStringList("This app is only for Apple Silicon Cores.\nIt is not working on Intel "
                        "Cores"));
  EXPECT_EQ(shownButton(), nullptr);
  EXPECT_EQ(visible<MainTitleWidget>(), nullptr);
  EXPECT_FALSE(window().moreButton().isVisible());
}

TEST_F(MainWindowTest, PutsTheRefusalIntoItsMiddle) {
  shownWith(refusalContent());
  const auto* text = visible<MessageText>();
  const QRect place(text->mapTo(&window(), QPoint()), text->size());
  EXPECT_LE((place.center() - window().rect().center()).manhattanLength(), 1);
}

TEST_F(MainWindowTest, ShowsTheInstallScreen) {
  shownWith(installContent());
  EXPECT_EQ(
      visibleTexts(),
      QStringList(
          {"Welcome", "\nBefore to start you need to install the Pallimo Powermetrics Helper\n"}));
  ASSERT_NE(shownButton(), nullptr);
  EXPECT_EQ(shownButton()->text(), "Install Helper");
  EXPECT_NE(visible<MainTitleWidget>(), nullptr);
  EXPECT_TRUE(window().moreButton().isVisible());
}

TEST_F(MainWindowTest, ShowsTheUpdateScreen) {
  shownWith(updateContent());
  EXPECT_EQ(visibleTexts(), QStringList("\nThe Pallimo Powermetrics Helper need being updated\n"));
  ASSERT_NE(shownButton(), nullptr);
  EXPECT_EQ(shownButton()->text(), "Update Helper");
  EXPECT_NE(visible<MainTitleWidget>(), nullptr);
}

TEST_F(MainWindowTest, ShowsTheFourPanelsBelowTheHeader) {
  shownWith(liveContentAt(0));
  ASSERT_EQ(window().liveContent().panels().size(), 4u);
  EXPECT_NE(visible<MainTitleWidget>(), nullptr);
  EXPECT_EQ(visible<ContentScreen>(), nullptr);
  int bottom = MainWindow::kHeaderHeight - LiveContent::kGap;
  for (const PanelWidget* panel : window().liveContent().panels()) {
    const QRect place(panel->mapTo(&window(), QPoint()), panel->size());
    EXPECT_EQ(place.top(), bottom + LiveContent::kGap);
    EXPECT_EQ(place.left(), LiveContent::kEdge);
    EXPECT_EQ(place.width(), window().width() - 2 * LiveContent::kEdge);
    bottom = place.top() + place.height();
  }
  EXPECT_EQ(window().height(), bottom + LiveContent::kEdge);
}

TEST_F(MainWindowTest, IsAsWideInEveryScreenAndCannotBeResized) {
  shown();
  for (const auto& content :
       {refusalContent(), installContent(), updateContent(), liveContentAt(0)}) {
    change(content);
    EXPECT_EQ(window().width(), 380);
    EXPECT_EQ(window().minimumSize(), window().size());
    EXPECT_EQ(window().maximumSize(), window().size());
  }
}

TEST_F(MainWindowTest, IsAsHighAsWhatItShows) {
  shownWith(liveContentAt(0));
  EXPECT_EQ(window().height(), 64 + 160 + 8 + 160 + 8 + 140 + 8 + 140 + 10);
  change(installContent());
  EXPECT_EQ(window().height(), 224);
  change(updateContent());
  EXPECT_EQ(window().height(), 198);
  MainWindowContent asked = updateContent();
  asked.button = "";
  change(asked);
  EXPECT_EQ(window().height(), 172);
  change(refusalContent());
  EXPECT_EQ(window().height(), 160);
}

TEST_F(MainWindowTest, KeepsItsSizeWhileFiguresChange) {
  shownWith(liveContentAt(0));
  const QSize before = window().size();
  for (int moment = 1; moment < 4; ++moment) {
    change(liveContentAt(moment));
    EXPECT_EQ(window().size(), before);
  }
}

TEST_F(MainWindowTest, PressesTheInstallButton) {
  shownWith(installContent());
  QTest::mouseClick(shownButton(), Qt::LeftButton);
  EXPECT_EQ(done_, std::vector<std::string>{"press"});
  EXPECT_NE(shownButton(), nullptr);
}

TEST_F(MainWindowTest, HidesTheUpdateButtonAtOnce) {
  shownWith(updateContent());
  QTest::mouseClick(shownButton(), Qt::LeftButton);
  EXPECT_EQ(done_, std::vector<std::string>{"press"});
  EXPECT_EQ(shownButton(), nullptr);
  EXPECT_EQ(visibleTexts(), QStringList("\nThe Pallimo Powermetrics Helper need being updated\n"));
  EXPECT_NE(visible<MainTitleWidget>(), nullptr);
  EXPECT_TRUE(window().moreButton().isVisible());
}

TEST_F(MainWindowTest, LooksOnceForAPress) {
  shownWith(installContent());
  looks_ = 0;
  QTest::mouseClick(shownButton(), Qt::LeftButton);
  settle();
  EXPECT_EQ(looks_, 1);
}

TEST_F(MainWindowTest, HasTheRulesAppliedForEachRepaintOfASample) {
  shownWith(liveContentAt(0));
  std::vector<QWidget*> ruled;
  const WindowRules rules([&ruled](QWidget& window) { ruled.push_back(&window); });
  for (int sample = 1; sample < 4; ++sample) {
    ruled.clear();
    change(liveContentAt(sample));
    EXPECT_FALSE(ruled.empty());
    for (QWidget* applied : ruled) EXPECT_EQ(applied, &window());
  }
}

TEST_F(MainWindowTest, GivesWayToThePanelsWhenToldOfTheHelper) {
  shownWith(installContent());
  change(liveContentAt(0));
  EXPECT_EQ(visible<ContentScreen>(), nullptr);
  EXPECT_TRUE(window().liveContent().isVisible());
  change(installContent());
  EXPECT_FALSE(window().liveContent().isVisible());
  ASSERT_NE(shownButton(), nullptr);
}

TEST_F(MainWindowTest, HandsNewFiguresToItsPanels) {
  shownWith(liveContentAt(0));
  change(liveContentAt(1));
  EXPECT_EQ(window().liveContent().panels()[0]->panel(), examplePowerPanel(1));
}

TEST_F(MainWindowTest, LooksOnceForAllChangesOfATurn) {
  shownWith(liveContentAt(0));
  looks_ = 0;
  for (int model = 0; model < 4; ++model) window().contentChanged();
  settle();
  EXPECT_EQ(looks_, 1);
}

TEST_F(MainWindowTest, LooksAtNothingWhileHidden) {
  shownWith(liveContentAt(0));
  window().hide();
  looks_ = 0;
  change(liveContentAt(1));
  EXPECT_EQ(looks_, 0);
  window().show();
  EXPECT_EQ(looks_, 1);
  EXPECT_EQ(window().liveContent().panels()[0]->panel(), examplePowerPanel(1));
}

TEST_F(MainWindowTest, LooksAtNothingWhileMinimised) {
  shownWith(liveContentAt(0));
  window().showMinimized();
  settle();
  looks_ = 0;
  change(liveContentAt(1));
  EXPECT_EQ(looks_, 0);
  window().showNormal();
  settle();
  EXPECT_EQ(looks_, 1);
  EXPECT_EQ(window().liveContent().panels()[0]->panel(), examplePowerPanel(1));
}

TEST_F(MainWindowTest, PaintsNothingWhileHiddenOrMinimised) {
  shownWith(liveContentAt(0));
  PaintLog paints(window());
  PaintLog panelPaints(*window().liveContent().panels()[0]);
  window().showMinimized();
  settle();
  paints.clear();
  panelPaints.clear();
  change(liveContentAt(1));
  window().hide();
  change(liveContentAt(2));
  EXPECT_TRUE(paints.painted().empty());
  EXPECT_TRUE(panelPaints.painted().empty());
}

TEST_F(MainWindowTest, RepaintsNoTitleThatStaysTheSame) {
  shownWith(liveContentAt(0));
  // A window that is new to the screen may be painted once more.
  change(liveContentAt(1));
  PaintLog title(*visible<MainTitleWidget>());
  change(liveContentAt(2));
  EXPECT_TRUE(title.painted().empty());
}

TEST_F(MainWindowTest, RepaintsANewTitle) {
  shownWith(liveContentAt(0));
  PaintLog title(*visible<MainTitleWidget>());
  MainWindowContent content = liveContentAt(0);
  content.title[0].name.text = "Apple M9";
  change(content);
  EXPECT_FALSE(title.painted().empty());
  EXPECT_TRUE(visible<MainTitleWidget>()->accessibleName().startsWith("Apple M9"));
}

TEST_F(MainWindowTest, IsOneWindowWithoutATitleBar) {
  shown();
  EXPECT_TRUE(window().windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_FALSE(window().windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_EQ(window().windowTitle(), "Pallimo");
}

}  // namespace
}  // namespace pallimo::ui::widgets
