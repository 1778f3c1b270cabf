// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/more_button.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCursor>
#include <QMenu>
#include <QPixmap>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/counting_random.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class MoreButtons : public testing::Test {
 protected:
  MoreButtons() : application_(testApplication()) { showAndWait(*button_); }

  std::vector<MenuItem> rows() {
    const auto nothing = [] {};
    return moreButtonMenu(
        {.checkForUpdates = [this] { ++updates_; },
         .uninstallHelper = [this] { ++removals_; },
         .logToFile = {[this] { return isLogging_; }, [this](bool on) { isLogging_ = on; }},
         .showSettings = nothing,
         .openStorePage = nothing,
         .openSocialPage = nothing,
         .contactDeveloper = nothing,
         .quit = nothing},
        isAuthorized_, random_);
  }
  void click() {
    QTest::mouseClick(button_.get(), Qt::LeftButton);
    settle();
  }
  QAction* row(int number) { return button_->menu()->actions().at(number - 1); }
  void choose(int number) {
    QTest::mouseClick(button_->menu(), Qt::LeftButton, {},
                      button_->menu()->actionGeometry(row(number)).center());
    settle();
  }
  QColor groundColor() {
    QPixmap image(button_->size());
    button_->render(&image);
    return image.toImage().pixelColor(13, 4);
  }

  static constexpr QPoint kOutside{200, 200};

  QApplication& application_;
  CountingRandom random_;
  bool isAuthorized_ = true;
  bool isLogging_ = false;
  int updates_ = 0;
  int removals_ = 0;
  std::unique_ptr<MoreButton> button_ = std::make_unique<MoreButton>([this] { return rows(); });
};

TEST_F(MoreButtons, AreTwentySixByTwentyPoints) { EXPECT_EQ(button_->size(), QSize(26, 20)); }

TEST_F(MoreButtons, AreReadAloudAsAButton) {
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(button_.get());
  EXPECT_EQ(spoken->text(QAccessible::Name), "More");
  EXPECT_EQ(spoken->role(), QAccessible::PushButton);
}

TEST_F(MoreButtons, LightUpUnderThePointer) {
  const Palette& colors = colorsOf(ColorScheme::light);
  PaintLog paints(*button_);
  const auto movePointer = [&](QPoint place) {
    paints.clear();
    QCursor::setPos(button_->mapToGlobal(place));
    return QTest::qWaitFor([&] { return !paints.painted().empty(); });
  };
  // The pointer begins in the corner of the display, where the button may be shown: only one that
  // came in can go out.
  for (const QPoint place : {QPoint(13, 10), kOutside}) {
    QCursor::setPos(button_->mapToGlobal(place));
    settle();
  }
  EXPECT_EQ(groundColor(), toColor(colors.control));
  EXPECT_TRUE(movePointer({13, 10}));
  EXPECT_EQ(groundColor(), toColor(colors.controlHover));
  EXPECT_TRUE(movePointer(kOutside));
  EXPECT_EQ(groundColor(), toColor(colors.control));
}

TEST_F(MoreButtons, ShowThreeDots) {
  QPixmap pixmap(button_->size() * 2);
  pixmap.setDevicePixelRatio(2);
  button_->render(&pixmap);
  const QImage image = pixmap.toImage();
  const QColor dot = toColor(colorsOf(ColorScheme::light).secondaryText);
  int dots = 0;
  for (int x = 1; x < image.width(); ++x) {
    dots += image.pixelColor(x, 20) == dot && image.pixelColor(x - 1, 20) != dot ? 1 : 0;
  }
  EXPECT_EQ(dots, 3);
}

TEST_F(MoreButtons, OpenTheMenuAtAClick) {
  EXPECT_EQ(button_->menu(), nullptr);
  click();
  ASSERT_NE(button_->menu(), nullptr);
  EXPECT_TRUE(button_->menu()->isVisible());
  EXPECT_EQ(button_->menu()->actions().size(), 12);
}

TEST_F(MoreButtons, CloseTheMenuAtTheNextClick) {
  for (const bool isOpen : {true, false, true, false}) {
    QTest::mouseClick(button_->windowHandle(), Qt::LeftButton, {}, {13, 10});
    settle();
    EXPECT_EQ(button_->menu() != nullptr, isOpen);
  }
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(MoreButtons, CloseTheMenuWhenTheyArePressedOnceMore) {
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(button_.get());
  for (const bool isOpen : {true, false, true}) {
    spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    // Qt keeps the button down for a moment.
    EXPECT_TRUE(QTest::qWaitFor([&] { return (button_->menu() != nullptr) == isOpen; }));
    settle();
  }
  EXPECT_EQ(button_->findChildren<QMenu*>().size(), 1);
}

TEST_F(MoreButtons, OpenTheMenuFromTheKeyboard) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Down}) {
    QTest::keyClick(button_.get(), key);
    settle();
    ASSERT_NE(button_->menu(), nullptr) << key;
    button_->menu()->close();
    settle();
    EXPECT_EQ(button_->menu(), nullptr) << key;
  }
}

TEST_F(MoreButtons, TakeTheFocus) { EXPECT_EQ(button_->focusPolicy(), Qt::StrongFocus); }

TEST_F(MoreButtons, ShowTheFocusThatTheKeyboardBrought) {
  button_->clearFocus();
  const QColor without = groundColor();
  button_->setFocus(Qt::MouseFocusReason);
  EXPECT_EQ(groundColor(), without);
  const auto edge = [&] {
    QPixmap image(button_->size());
    button_->render(&image);
    return image.toImage().pixelColor(13, 0);
  };
  EXPECT_EQ(edge(), without);
  button_->clearFocus();
  button_->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(edge(), toColor(colorsOf(ColorScheme::light).accent));
}

TEST_F(MoreButtons, DoWhatIsChosen) {
  click();
  choose(1);
  EXPECT_EQ(updates_, 1);
  EXPECT_EQ(button_->menu(), nullptr);
}

TEST_F(MoreButtons, BuildTheMenuAnewEachTime) {
  isAuthorized_ = false;
  click();
  EXPECT_FALSE(row(2)->isEnabled());
  button_->menu()->close();
  settle();
  isAuthorized_ = true;
  click();
  EXPECT_TRUE(row(2)->isEnabled());
}

TEST_F(MoreButtons, LetNobodyChooseWhatIsDisabled) {
  isAuthorized_ = false;
  click();
  choose(2);
  EXPECT_EQ(removals_, 0);
}

TEST_F(MoreButtons, FollowTheHelpersStateInTheOpenMenu) {
  isAuthorized_ = false;
  click();
  QMenu* open = button_->menu();
  isAuthorized_ = true;
  button_->refreshMenu();
  EXPECT_EQ(button_->menu(), open);
  EXPECT_TRUE(row(2)->isEnabled());
}

TEST_F(MoreButtons, RefreshNothingWhileTheMenuIsClosed) {
  button_->refreshMenu();
  EXPECT_EQ(button_->menu(), nullptr);
}

TEST_F(MoreButtons, SwitchLoggingOnAndOff) {
  click();
  EXPECT_FALSE(row(4)->isChecked());
  choose(4);
  EXPECT_TRUE(isLogging_);
  click();
  EXPECT_TRUE(row(4)->isChecked());
  choose(4);
  EXPECT_FALSE(isLogging_);
}

TEST_F(MoreButtons, KeepAnOpenMenuThroughAChangeOfScheme) {
  click();
  button_->setColorScheme(ColorScheme::dark);
  ASSERT_NE(button_->menu(), nullptr);
  EXPECT_EQ(button_->menu()->actions().size(), 12);
}

}  // namespace
}  // namespace pallimo::ui::widgets
