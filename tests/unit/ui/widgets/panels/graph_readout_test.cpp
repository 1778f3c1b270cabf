// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QTimerEvent>
#include <cstdlib>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/panels/graph_widget_fixture.h"

namespace pallimo::ui::widgets {
namespace {

// What the pointer and the keyboard are told.
class GraphReadouts : public GraphWidgets {
 protected:
  void leave() {
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&widget(), &leave);
  }
  /// The timers that run for the widget; what a second does is theirs.
  QList<QAbstractEventDispatcher::TimerInfo> timers() {
    return QAbstractEventDispatcher::instance()->registeredTimers(&widget());
  }
  void letASecondPass() {
    for (const auto& timer : timers()) {
      QTimerEvent tick(timer.timerId);
      QApplication::sendEvent(&widget(), &tick);
    }
  }
  /// As if another window had become the active one, and this one again.
  void deactivate() {
    other_.show();
    activate(other_);
  }
  void activate() { activate(widget()); }
  /// Whether a ring goes down the left side of the box, inside its outline.
  bool wearsRing() {
    const Palette& colors = colorsOf(ColorScheme::light);
    const QColor ring = blended(toColor(colors.panel), toColor(colors.accent), 0.6);
    const QColor found = picture(widget(), 1).pixelColor(1, widget().box().center().y());
    return std::abs(found.red() - ring.red()) < 3 && std::abs(found.blue() - ring.blue()) < 3;
  }

  QWidget other_;

 private:
  static void activate(QWidget& window) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
};

TEST_F(GraphReadouts, TellWhatIsUnderThePointer) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  EXPECT_TRUE(showsReadout());
  ASSERT_FALSE(asked_.empty());
  EXPECT_EQ(asked_.back(), std::pair(100.0, 316.0));
}

TEST_F(GraphReadouts, TellNothingBesideTheBoxOrWhereNoSampleIs) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  moveTo({330, 50});
  EXPECT_FALSE(showsReadout());
  moveTo({100, 50});
  EXPECT_TRUE(showsReadout());
  moveTo({5, 50});
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphReadouts, TellNothingOnceThePointerHasGone) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  leave();
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphReadouts, AskAnewForWhatIsUnderTheRestingPointerWhenASampleComes) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  asked_.clear();
  addSample();
  EXPECT_EQ(asked_, (std::vector{std::pair(100.0, 316.0)}));
}

TEST_F(GraphReadouts, TellNothingWithoutASource) {
  showAndWait(widget());
  moveTo({100, 50});
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphReadouts, KeepTheGraphAsItIsUnderTheReadout) {
  useReadout();
  showAndWait(widget());
  const auto before = widget().counts();
  moveTo({100, 50});
  moveTo({120, 50});
  EXPECT_EQ(widget().counts().whole, before.whole);
  EXPECT_EQ(widget().counts().moved, before.moved);
}

TEST_F(GraphReadouts, TellTheNewestSampleToTheKeyboard) {
  useReadout();
  showWithKeyboard();
  EXPECT_TRUE(showsReadout());
  EXPECT_EQ(readoutX(), 316);
  EXPECT_EQ(widget().accessibleDescription(), "PKG 14.31, 12 s ago");
}

TEST_F(GraphReadouts, GoFromSampleToSampleByKeys) {
  useReadout();
  showWithKeyboard();
  press(Qt::Key_Right);  // there is no newer one
  EXPECT_EQ(readoutX(), 316);
  press(Qt::Key_Left);
  press(Qt::Key_Left);
  EXPECT_EQ(readoutX(), 314);
  press(Qt::Key_Right);
  EXPECT_EQ(readoutX(), 315);
  press(Qt::Key_Left);
  press(Qt::Key_End);
  EXPECT_EQ(readoutX(), 316);
}

TEST_F(GraphReadouts, StopAtTheOldestSample) {
  useReadout();
  showWithKeyboard();
  for (int keys = 0; keys < 350; ++keys) press(Qt::Key_Left);
  EXPECT_EQ(readoutX(), 10);
}

TEST_F(GraphReadouts, TellNothingOnceTheKeyboardHasGone) {
  useReadout();
  showWithKeyboard();
  widget().clearFocus();
  EXPECT_FALSE(showsReadout());
  EXPECT_EQ(widget().accessibleDescription(), "");
}

TEST_F(GraphReadouts, TellTheKeyboardHoweverItCame) {
  useReadout();
  showWithKeyboard();
  for (const auto reason :
       {Qt::BacktabFocusReason, Qt::ShortcutFocusReason, Qt::OtherFocusReason}) {
    widget().clearFocus();
    ASSERT_FALSE(showsReadout());
    widget().setFocus(reason);
    EXPECT_TRUE(showsReadout()) << reason;
    EXPECT_EQ(readoutX(), 316) << reason;
  }
}

TEST_F(GraphReadouts, TellTheKeyboardThatAWindowGaveThemOnlyOnceAKeyIsPressed) {
  useReadout();
  showAndWait(widget());
  moveTo({330, 50});  // the pointer may rest anywhere
  activate();
  widget().clearFocus();
  widget().setFocus(Qt::ActiveWindowFocusReason);
  EXPECT_FALSE(showsReadout());
  press(Qt::Key_Left);
  EXPECT_TRUE(showsReadout());
}

TEST_F(GraphReadouts, BeginWithTheNewestSampleEachTimeTheKeyboardComes) {
  useReadout();
  showWithKeyboard();
  press(Qt::Key_Left);
  widget().clearFocus();
  widget().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(readoutX(), 316);
}

TEST_F(GraphReadouts, GoBackToTheKeyboardsSampleOnceThePointerHasGone) {
  useReadout();
  showWithKeyboard();
  press(Qt::Key_Left);
  press(Qt::Key_Left);
  moveTo({100, 50});
  EXPECT_EQ(readoutX(), 100);
  moveTo({330, 50});
  EXPECT_EQ(readoutX(), 314);
  moveTo({100, 50});
  leave();
  EXPECT_TRUE(showsReadout());
  EXPECT_EQ(readoutX(), 314);
}

TEST_F(GraphReadouts, FollowAKeyWhereverThePointerRests) {
  useReadout();
  showWithKeyboard();
  moveTo({100, 50});
  press(Qt::Key_Left);
  EXPECT_EQ(readoutX(), 315);
}

TEST_F(GraphReadouts, TellNothingInAWindowThatIsNotActive) {
  useReadout();
  showWithKeyboard();
  press(Qt::Key_Left);
  deactivate();
  EXPECT_FALSE(showsReadout());
  activate();
  EXPECT_TRUE(showsReadout());
  EXPECT_EQ(readoutX(), 315);
}

TEST_F(GraphReadouts, GrowOlderWithoutASample) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  asked_.clear();
  age_ = "13 s ago";
  ASSERT_EQ(timers().size(), 1);
  EXPECT_EQ(timers().front().interval, 1000);
  letASecondPass();
  EXPECT_EQ(asked_, (std::vector{std::pair(100.0, 316.0)}));
  EXPECT_EQ(widget().overlay().readout().age, "13 s ago");
}

TEST_F(GraphReadouts, AskOfNothingWhileNothingIsTold) {
  useReadout();
  showAndWait(widget());
  moveTo({330, 50});  // the pointer may rest anywhere
  EXPECT_TRUE(timers().isEmpty());
  moveTo({100, 50});
  leave();
  EXPECT_TRUE(timers().isEmpty());
  moveTo({100, 50});
  widget().hide();
  EXPECT_TRUE(timers().isEmpty());
}

TEST_F(GraphReadouts, WearARingWhileTheyHaveTheKeyboard) {
  graph() = {{"1"}, {}};
  widget().setGraph(graph());
  showWithKeyboard();  // without a sample to tell of
  EXPECT_TRUE(wearsRing());
  deactivate();
  EXPECT_FALSE(wearsRing());
  activate();
  EXPECT_TRUE(wearsRing());
  widget().clearFocus();
  EXPECT_FALSE(wearsRing());
}

}  // namespace
}  // namespace pallimo::ui::widgets
