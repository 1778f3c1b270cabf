// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/app_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/main/main_window_fixture.h"
#include "unit/ui/widgets/panels/kept_picture.h"

namespace pallimo::ui::widgets {
namespace {

QPalette systemPalette(ColorScheme scheme) {
  return QPalette(scheme == ColorScheme::dark ? QColor(40, 40, 40) : QColor(230, 230, 230));
}

class AppWindowTest : public MainWindowFixture {
 protected:
  AppWindowTest() : before_(QApplication::palette()) {}
  ~AppWindowTest() override { QApplication::setPalette(before_); }

  static QColor at(QWidget& widget, const QPoint& point) {
    return pictureOf(widget, 1).toImage().pixelColor(point);
  }

  QColor ground() { return at(window(), {2, 2}); }

 private:
  const QPalette before_;
};

TEST_F(AppWindowTest, TellsTheSchemeFromThePalette) {
  EXPECT_EQ(schemeOf(systemPalette(ColorScheme::dark)), ColorScheme::dark);
  EXPECT_EQ(schemeOf(systemPalette(ColorScheme::light)), ColorScheme::light);
}

TEST_F(AppWindowTest, FollowsTheSystemsSchemeWhileItIsShown) {
  QApplication::setPalette(systemPalette(ColorScheme::light));
  shownWith(liveContentAt(0));
  EXPECT_EQ(ground(), toColor(colorsOf(ColorScheme::light).window));
  QApplication::setPalette(systemPalette(ColorScheme::dark));
  settle();
  EXPECT_EQ(window().colorScheme(), ColorScheme::dark);
  EXPECT_EQ(ground(), toColor(colorsOf(ColorScheme::dark).window));
}

TEST_F(AppWindowTest, BeginsInTheSystemsScheme) {
  QApplication::setPalette(systemPalette(ColorScheme::dark));
  shownWith(liveContentAt(0));
  EXPECT_EQ(ground(), toColor(colorsOf(ColorScheme::dark).window));
  EXPECT_EQ(at(*window().liveContent().panels()[0], {5, 40}),
            toColor(colorsOf(ColorScheme::dark).panel));
}

TEST_F(AppWindowTest, SwitchesAllThatIsInIt) {
  shownWith(liveContentAt(0));
  for (const auto scheme : {ColorScheme::dark, ColorScheme::light}) {
    window().setColorScheme(scheme);
    settle();
    for (PanelWidget* panel : window().liveContent().panels()) {
      EXPECT_EQ(at(*panel, {5, 40}), toColor(colorsOf(scheme).panel));
    }
    EXPECT_EQ(at(window().moreButton(), {13, 3}), toColor(colorsOf(scheme).control));
  }
}

TEST_F(AppWindowTest, SwitchesTheScreensThatAreNotShown) {
  shownWith(liveContentAt(0));
  window().setColorScheme(ColorScheme::dark);
  change(installContent());
  EXPECT_EQ(at(*shownButton(), {10, 14}), toColor(colorsOf(ColorScheme::dark).accent));
}

TEST_F(AppWindowTest, KeepsASchemeThatWasSetUntilItIsTakenBack) {
  QApplication::setPalette(systemPalette(ColorScheme::light));
  shown();
  window().setColorScheme(ColorScheme::dark);
  QApplication::setPalette(systemPalette(ColorScheme::light));
  settle();
  EXPECT_EQ(window().colorScheme(), ColorScheme::dark);
  window().setColorScheme(std::nullopt);
  EXPECT_EQ(window().colorScheme(), ColorScheme::light);
  EXPECT_EQ(ground(), toColor(colorsOf(ColorScheme::light).window));
}

}  // namespace
}  // namespace pallimo::ui::widgets
