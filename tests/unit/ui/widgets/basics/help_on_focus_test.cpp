// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/help_on_focus.h"

#include <gtest/gtest.h>

#include <QToolTip>

#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class HelpOnFocusTest : public testing::Test {
 protected:
  HelpOnFocusTest() {
    testApplication();
    window_ = std::make_unique<QWidget>();
    helped_ = new QWidget(window_.get());
    helped_->setToolTip("Power in Watts.");
    helped_->setGeometry(0, 0, 100, 20);
    control_ = new QWidget(window_.get());
    control_->setFocusPolicy(Qt::TabFocus);
    new HelpOnFocus(*control_, *helped_, [this] { return isNeeded_; });
    showAndWait(*window_);
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    control_->clearFocus();  // which the window gave it
  }
  ~HelpOnFocusTest() override {
    QToolTip::hideText();
    settle();
  }

  std::unique_ptr<QWidget> window_;
  QWidget* helped_;
  QWidget* control_;
  bool isNeeded_ = true;
};

TEST_F(HelpOnFocusTest, IsShownWhenTabComes) {
  control_->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(QToolTip::text(), "Power in Watts.");
}

TEST_F(HelpOnFocusTest, IsNotShownToWhoeverDidNotAsk) {
  control_->setFocus(Qt::ActiveWindowFocusReason);
  EXPECT_EQ(QToolTip::text(), "");
  control_->clearFocus();
  isNeeded_ = false;
  control_->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(QToolTip::text(), "");
}

// A tip takes a moment to go.
TEST_F(HelpOnFocusTest, GoesWithTheNextKeyAndWithTheKeyboard) {
  control_->setFocus(Qt::TabFocusReason);
  QTest::keyClick(control_, Qt::Key_Left);
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, 60'000));
  control_->clearFocus();
  control_->setFocus(Qt::BacktabFocusReason);
  ASSERT_NE(QToolTip::text(), "");
  control_->clearFocus();
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, 60'000));
}

}  // namespace
}  // namespace pallimo::ui::widgets
