// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QScreen>
#include <chrono>
#include <cstdio>

#include "end_to_end/window/event_count.h"
#include "end_to_end/window/line_color.h"
#include "end_to_end/window/window_app.h"
#include "ui/palette.h"
#include "ui/widgets/basics/colors.h"
#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_widget.h"

namespace pallimo::end_to_end {
namespace {

using ui::ColorScheme;

/// Of "12 s ago" and of "3 min 20 s ago".
long secondsOf(const std::string& age) {
  long first = 0, second = 0;
  const bool hasMinutes = std::sscanf(age.c_str(), "%ld min %ld s", &first, &second) == 2;
  return hasMinutes ? first * 60 + second : first;
}

/// What the windows look like, and when they are painted.
class Appearance : public WindowApp {
 protected:
  ~Appearance() override { QApplication::setPalette(QPalette()); }

  /// The system changes its colour scheme.
  static void systemTurns(ColorScheme scheme) {
    const bool isDark = scheme == ColorScheme::dark;
    QApplication::setPalette(QPalette(isDark ? QColor(45, 45, 45) : QColor(240, 240, 240)));
  }
  /// What stands on the screen where the window is.
  static QImage onScreen(const QWidget& shown) {
    return QGuiApplication::primaryScreen()->grabWindow(shown.winId()).toImage();
  }
  /// The lines of a graph alone: the figures above it have the same colours.
  QImage boxOnScreen(std::size_t index) const {
    const QRect box = graph(index).box();
    return onScreen(window()).copy(QRect(graph(index).mapTo(&window(), box.topLeft()), box.size()));
  }
  static bool isGround(const QWidget& shown, ColorScheme scheme) {
    return soon([&] {
      const QColor corner = onScreen(shown).pixelColor(shown.width() - 3, shown.height() - 3);
      return corner == widgets::toColor(ui::palette(scheme).window);
    });
  }
  /// The colour of a panel between its frame and what it holds.
  bool isPanelGround(std::size_t index, ColorScheme scheme) const {
    return soon([&] {
      const QPoint place = panelWidget(index).mapTo(&window(), QPoint(6, 60));
      return onScreen(window()).pixelColor(place) == widgets::toColor(ui::palette(scheme).panel);
    });
  }
  static bool showsLine(const QImage& picture, ui::SeriesColor series) {
    const ui::Palette& colors = ui::palette(ColorScheme::light);
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const std::uint32_t pixel = picture.pixel(x, y) & 0xffffff;
        if (isOfLine(pixel, colors.series(series), colors.panel)) return true;
      }
    }
    return false;
  }

  /// The pointer goes over that sample of the graph, 0 being the newest.
  void pointAt(std::size_t index, int sample) const {
    const widgets::GraphWidget& shown = graph(index);
    const QPoint place(shown.box().x() + shown.box().width() - sample, shown.box().center().y());
    QTest::mouseMove(window().windowHandle(), shown.mapTo(&window(), place));
  }
  /// The oldest sample that a graph has.
  void pointAtOldest(std::size_t index) const {
    pointAt(index, static_cast<int>(panel(index).seriesTexts.at(0).values.size()) - 1);
  }
  const widgets::GraphOverlay& overlay(std::size_t index) const { return graph(index).overlay(); }
};

TEST_F(Appearance, FollowsTheSystemsSchemeWhileItRuns) {
  startLive();
  choose("Settings...");
  for (const ColorScheme scheme : {ColorScheme::dark, ColorScheme::light, ColorScheme::dark}) {
    systemTurns(scheme);
    EXPECT_TRUE(isGround(window(), scheme));
    EXPECT_TRUE(isGround(settings(), scheme));
    for (std::size_t index = kPower; index <= kUtilization; ++index) {
      EXPECT_TRUE(isPanelGround(index, scheme)) << index;
    }
  }
}

TEST_F(Appearance, FollowsTheSystemsSchemeBehindTheInstallScreenToo) {
  startApp();
  systemTurns(ColorScheme::dark);
  EXPECT_TRUE(isGround(window(), ColorScheme::dark));
  click(*button());
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(isPanelGround(kPower, ColorScheme::dark));
}

TEST_F(Appearance, DrawsEachLineInItsColour) {
  systemTurns(ColorScheme::light);
  startLive();
  ASSERT_TRUE(samples(10));
  using Color = ui::SeriesColor;
  for (const Color series : {Color::purple, Color::blue, Color::cyan, Color::pink}) {
    EXPECT_TRUE(soon([&] { return showsLine(boxOnScreen(kTemperature), series); }))
        << static_cast<int>(series);
  }
}

TEST_F(Appearance, WindowKeepsItsSizeWhileFiguresChange) {
  startLive();
  const EventCount resizes(window(), QEvent::Resize);
  ASSERT_TRUE(samples(10));
  EXPECT_EQ(resizes.count(), 0);
}

TEST_F(Appearance, NothingIsPaintedWhileTheWindowIsHidden) {
  startLive();
  window().hide();
  const EventCount paints(window(), QEvent::Paint);
  const EventCount graphPaints(graph(kPower), QEvent::Paint);
  const ui::Panel last = panel(kPower);
  ASSERT_TRUE(samples(3));
  widgets::settle();
  EXPECT_EQ(paints.count(), 0);
  EXPECT_EQ(graphPaints.count(), 0);
  EXPECT_EQ(panel(kPower), last);  // not even looked at
  window().show();
  EXPECT_TRUE(soon([&] { return graphPaints.count() > 0; }));
  EXPECT_GE(panel(kPower).graph.datas.at(0).data.size(), last.graph.datas.at(0).data.size() + 3);
}

TEST_F(Appearance, NothingIsPaintedWhileTheWindowIsMinimised) {
  startLive();
  press(Qt::Key_M, Qt::ControlModifier);
  ASSERT_TRUE(soon([this] { return window().isMinimized(); }));
  widgets::settle();
  const EventCount paints(window(), QEvent::Paint);
  const EventCount graphPaints(graph(kPower), QEvent::Paint);
  const ui::Panel last = panel(kPower);
  ASSERT_TRUE(samples(3));
  widgets::settle();
  EXPECT_EQ(paints.count(), 0);
  EXPECT_EQ(graphPaints.count(), 0);
  EXPECT_EQ(panel(kPower), last);
  window().showNormal();
  EXPECT_TRUE(soon([&] { return graphPaints.count() > 0; }));
  EXPECT_TRUE(samples(1));
}

TEST_F(Appearance, ASampleMovesTheGraphsInsteadOfPaintingThemAnew) {
  startLive();
  widgets::settle();
  // The title of a window that has just turned live may still be new to the screen.
  const widgets::GraphWidget::Counts before = graph(kFrequency).counts();
  ASSERT_TRUE(samples(5));
  ASSERT_TRUE(soon([&] { return graph(kFrequency).counts().moved >= before.moved + 4; }));
  EXPECT_EQ(graph(kFrequency).counts().whole, before.whole);
}

TEST_F(Appearance, PointingAtAGraphTellsTheSamplesFiguresAndTheirAge) {
  startLive();
  ASSERT_TRUE(samples(14));
  // A second passes in a tenth of one, and a new sample moves another one under the pointer.
  ASSERT_TRUE(soon([this] {
    pointAt(kPower, 12);
    return overlay(kPower).isVisible() && overlay(kPower).readout().age == "12 s ago";
  }));
  const ui::Readout& readout = overlay(kPower).readout();
  EXPECT_EQ(readout.x, graph(kPower).box().width() - 12);
  const ui::Panel& shown = panel(kPower);
  ASSERT_EQ(readout.entries.size(), 4u);
  for (std::size_t i = 0; i < readout.entries.size(); ++i) {
    const ui::SeriesText& series = shown.seriesTexts.at(i);
    EXPECT_EQ(readout.entries[i].label, series.label);
    EXPECT_EQ(readout.entries[i].value, ui::formatValue(series.format, series.values.at(12)));
    EXPECT_EQ(readout.entries[i].color, shown.graph.datas.at(i).color);
  }
}

TEST_F(Appearance, PointingAtAGraphRepaintsNoLine) {
  startLive();
  ASSERT_TRUE(samples(10));
  pointAt(kPower, 3);
  const widgets::GraphWidget::Counts before = graph(kPower).counts();
  const std::size_t lengthBefore = panel(kPower).graph.datas.at(0).data.size();
  for (int move = 0; move < 100; ++move) pointAt(kPower, move % 9);
  const std::size_t arrived = panel(kPower).graph.datas.at(0).data.size() - lengthBefore;
  EXPECT_EQ(graph(kPower).counts().whole, before.whole);
  EXPECT_LE(graph(kPower).counts().moved - before.moved, static_cast<int>(arrived) + 1);
}

TEST_F(Appearance, FiguresUnderThePointerGoWithIt) {
  startLive();
  ASSERT_TRUE(soon([this] {
    pointAt(kTemperature, 1);
    return overlay(kTemperature).isVisible();
  }));
  QTest::mouseMove(window().windowHandle(), QPoint(2, 2));
  EXPECT_TRUE(soon([this] { return !overlay(kTemperature).isVisible(); }));
}

TEST_F(Appearance, NothingIsToldWhereThereIsNoSample) {
  startLive();
  pointAt(kPower, graph(kPower).box().width() - 1);  // minutes before the first one
  EXPECT_FALSE(overlay(kPower).isVisible());
}

TEST_F(Appearance, FiguresUnderThePointerAreOfTheNewHelperWhenTheOldOneWasKilled) {
  startLive();
  ASSERT_TRUE(samples(12));
  helper().send(SIGKILL);
  ASSERT_TRUE(becomesInstallScreen());
  const auto killed = platform().clock.now();
  click(*button());
  ASSERT_TRUE(becomesLive());
  ASSERT_TRUE(samples(2));
  ASSERT_TRUE(soon([this] {
    pointAtOldest(kPower);
    return overlay(kPower).isVisible();
  }));
  // Nothing of the run that was cleared: the oldest figures came after it.
  const double oldest = general().modelPower()->snapshot()->historicCPU.newest.back();
  EXPECT_EQ(overlay(kPower).readout().entries.at(0).value,
            ui::formatValue(ui::ValueFormat::twoDecimals, oldest));
  EXPECT_LE(secondsOf(overlay(kPower).readout().age),
            std::chrono::ceil<std::chrono::seconds>(platform().clock.now() - killed).count());
}

}  // namespace
}  // namespace pallimo::end_to_end
