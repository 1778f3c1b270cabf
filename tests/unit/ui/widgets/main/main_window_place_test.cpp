// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>

#include "unit/ui/widgets/main/main_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

class MainWindowPlace : public MainWindowFixture {
 protected:
  void drag(const QPoint& by) {
    const QPoint grip(60, 30);
    auto* area = window().childAt(grip);
    const QPoint local = area->mapFrom(&window(), grip);
    QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, local);
    const QPoint global = area->mapToGlobal(local) + by;
    QMouseEvent move(QEvent::MouseMove, area->mapFromGlobal(global), global, Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(area, &move);
    QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, area->mapFromGlobal(global));
    settle();
  }
};

TEST_F(MainWindowPlace, IsTheStoredOne) {
  storedPlace_ = "120 40";
  shown();
  EXPECT_EQ(window().pos(), QPoint(120, 40));
}

TEST_F(MainWindowPlace, IsTheSystemsWithoutAStoredOneOrWithABadOne) {
  shown();
  const QPoint systems = window().pos();
  endWindow();
  storedPlace_ = "somewhere";
  shown();
  EXPECT_EQ(window().pos(), systems);
}

TEST_F(MainWindowPlace, IsOnAScreenAlthoughTheStoredOneIsNot) {
  storedPlace_ = "90000 90000";
  shown();
  EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(window().pos()));
}

TEST_F(MainWindowPlace, IsStoredWhenTheWindowIsHidden) {
  shown();
  window().move(77, 33);
  window().hide();
  EXPECT_EQ(storedPlace_, "77 33");
}

TEST_F(MainWindowPlace, IsStoredWhenTheWindowEnds) {
  shown();
  window().move(78, 34);
  endWindow();
  EXPECT_EQ(storedPlace_, "78 34");
}

TEST_F(MainWindowPlace, IsStoredSoonAfterAMove) {
  shown();
  window().move(79, 35);
  EXPECT_TRUE(QTest::qWaitFor([this] { return storedPlace_ == "79 35"; }));
}

TEST_F(MainWindowPlace, IsNotStoredByAWindowThatNeverMoved) {
  storedPlace_ = "120 40";
  window();
  storedPlace_ = "untouched";
  endWindow();
  EXPECT_EQ(storedPlace_, "untouched");
}

TEST_F(MainWindowPlace, FollowsTheHeaderThatIsDragged) {
  storedPlace_ = "100 50";
  shown();
  drag({35, 20});
  EXPECT_EQ(window().pos(), QPoint(135, 70));
}

TEST_F(MainWindowPlace, FollowsTheRefusalThatIsDragged) {
  storedPlace_ = "100 50";
  shownWith(refusalContent());
  drag({10, 10});
  EXPECT_EQ(window().pos(), QPoint(110, 60));
}

TEST_F(MainWindowPlace, StaysWhenAPanelIsDragged) {
  storedPlace_ = "100 50";
  shownWith(liveContentAt(0));
  auto* panel = window().liveContent().panels()[0];
  QTest::mousePress(panel, Qt::LeftButton);
  QTest::mouseMove(panel, QPoint(100, 100));
  QTest::mouseRelease(panel, Qt::LeftButton);
  EXPECT_EQ(window().pos(), QPoint(100, 50));
}

}  // namespace
}  // namespace pallimo::ui::widgets
