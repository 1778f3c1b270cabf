// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/panel_widget.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPixmap>
#include <QToolTip>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/value_widget.h"
#include "unit/ui/widgets/panels/example_panels.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class PanelWidgets : public testing::Test {
 protected:
  PanelWidgets() : application_(testApplication()) {}

  static std::unique_ptr<PanelWidget> made(const Panel& panel,
                                           PanelWidget::ReadoutSource readout = nullptr) {
    auto widget = std::make_unique<PanelWidget>(panel, std::move(readout));
    widget->resize(widget->sizeHint());
    return widget;
  }
  static std::vector<QString> spoken(const PanelWidget& panel) {
    std::vector<QString> names;
    for (const ValueWidget* value : panel.values()) names.push_back(value->accessibleName());
    return names;
  }
  static QImage picture(QWidget& widget) {
    QPixmap image(widget.size());
    image.fill(Qt::green);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image.toImage();
  }

  QApplication& application_;
};

TEST_F(PanelWidgets, AreAsHighAsTheirPanel) {
  EXPECT_EQ(made(examplePowerPanel())->sizeHint(), QSize(360, 160));
  EXPECT_EQ(made(exampleTemperaturePanel())->sizeHint(), QSize(360, 140));
}

TEST_F(PanelWidgets, GiveTheGraphTheSameWidthAndTheRestOfTheHeight) {
  const auto power = made(examplePowerPanel());
  EXPECT_EQ(power->graph().box().size(), QSize(316, 92));
  EXPECT_EQ(power->graph().geometry().topLeft() + power->graph().box().topLeft(), QPoint(13, 53));
  EXPECT_EQ(made(exampleUtilizationPanel())->graph().box().size(), QSize(316, 72));
}

TEST_F(PanelWidgets, PutEachValueAtItsColumn) {
  const auto power = made(examplePowerPanel());
  std::vector<int> lefts;
  for (const ValueWidget* value : power->values()) lefts.push_back(value->x());
  EXPECT_EQ(lefts, (std::vector{13, 88, 163, 248}));
}

TEST_F(PanelWidgets, PutTheValuesOfOneColumnAboveEachOther) {
  const auto pair = made(examplePairPanel());
  ASSERT_EQ(pair->values().size(), 3u);
  EXPECT_EQ(pair->values()[0]->x(), pair->values()[1]->x());
  EXPECT_EQ(pair->values()[0]->geometry().bottom() + 1, pair->values()[1]->y());
  EXPECT_EQ(pair->values()[0]->figureBegin(), pair->values()[1]->figureBegin());
  EXPECT_EQ(pair->values()[2]->x(), 13 + 90 + 10);
}

TEST_F(PanelWidgets, KeepTheirPartsApartAndWithinTheFrame) {
  for (const Panel& panel : widestPanels()) {
    const auto widget = made(panel);
    for (const QObject* child : widget->children()) {
      const QRect part = static_cast<const QWidget*>(child)->geometry();
      EXPECT_TRUE(widget->rect().adjusted(1, 1, -1, -1).contains(part)) << panel.title.labelLeft;
      for (const QObject* other : widget->children()) {
        EXPECT_TRUE(other == child ||
                    !part.intersects(static_cast<const QWidget*>(other)->geometry()))
            << panel.title.labelLeft;
      }
    }
  }
}

TEST_F(PanelWidgets, AreReadAloud) {
  const auto power = made(examplePowerPanel());
  QAccessibleInterface* panel = QAccessible::queryAccessibleInterface(power.get());
  EXPECT_EQ(panel->text(QAccessible::Name), "Power");
  EXPECT_EQ(panel->text(QAccessible::Description), "Power in Watts. Data from powermetrics");
  EXPECT_EQ(power->graph().accessibleName(), "Power graph");
  EXPECT_EQ(spoken(*power), (std::vector<QString>{"PKG 14.31 watts", "CPU 7.87 watts",
                                                  "ANE 0.02 watts", "GPU 1.62 watts"}));
}

TEST_F(PanelWidgets, ShowTheirHelpToTheKeyboard) {
  const auto power = made(examplePowerPanel());
  showAndWait(*power);
  power->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(power.get()));
  power->graph().clearFocus();
  power->graph().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(QToolTip::text(), "Power in Watts. Data from powermetrics");
  power->graph().clearFocus();
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, 60'000));
}

TEST_F(PanelWidgets, SpeakEachPanelsUnit) {
  EXPECT_EQ(spoken(*made(exampleFrequencyPanel()))[0], "E-CORE 1.42 gigahertz");
  EXPECT_EQ(spoken(*made(exampleTemperaturePanel()))[0], "CORE AVG 52.37 degrees Celsius");
  Panel fahrenheit = exampleTemperaturePanel();
  fahrenheit.title.labelRight = "℉";
  EXPECT_EQ(spoken(*made(fahrenheit))[0], "CORE AVG 52.37 degrees Fahrenheit");
  EXPECT_EQ(spoken(*made(exampleUtilizationPanel()))[0], "CORE 24.81 percent");
}

TEST_F(PanelWidgets, ShowNewFigures) {
  const auto power = made(examplePowerPanel());
  Panel next = examplePowerPanel(1);
  next.columns[0].values[0].value = "15.00";
  power->setPanel(next);
  EXPECT_EQ(spoken(*power)[0], "PKG 15.00 watts");
  EXPECT_EQ(power->panel(), next);
}

TEST_F(PanelWidgets, RepaintWhatChangedAndNothingElse) {
  const auto power = made(examplePowerPanel());
  showAndWait(*power);
  PaintLog frame(*power);
  PaintLog changed(*power->values()[0]);
  PaintLog unchanged(*power->values()[1]);
  PaintLog graph(power->graph());
  Panel next = examplePowerPanel(1);
  next.columns[0].values[0].value = "15.00";
  power->setPanel(next);
  settle();
  EXPECT_TRUE(frame.painted().empty());
  EXPECT_TRUE(unchanged.painted().empty());
  EXPECT_EQ(changed.painted().size(), 1u);
  EXPECT_EQ(graph.painted(), std::vector{power->graph().box()});
}

TEST_F(PanelWidgets, RepaintTitleValuesAndGraphAtOnceInAnotherUnit) {
  const auto temperature = made(exampleTemperaturePanel());
  showAndWait(*temperature);
  PaintLog title(*temperature->childAt(20, 12));
  PaintLog value(*temperature->values()[0]);
  PaintLog graph(temperature->graph());
  Panel fahrenheit = exampleTemperaturePanel();
  fahrenheit.title.labelRight = "℉";
  fahrenheit.columns[0].values[0].value = "126.3";
  fahrenheit.graph.axisLabels = {"250", "215", "180", "145", "110", "75"};
  temperature->setPanel(fahrenheit);
  settle();
  EXPECT_EQ(title.painted().size(), 1u);
  EXPECT_EQ(value.painted().size(), 1u);
  EXPECT_EQ(graph.painted(), std::vector{temperature->graph().rect()});
}

TEST_F(PanelWidgets, MoveTheGraphWhenASampleComes) {
  const auto power = made(examplePowerPanel());
  showAndWait(*power);
  const auto before = power->graph().counts();
  for (int moment = 1; moment <= 5; ++moment) {
    power->setPanel(examplePowerPanel(moment));
    settle();
  }
  EXPECT_EQ(power->graph().counts().moved, before.moved + 5);
  EXPECT_EQ(power->graph().counts().whole, before.whole);
}

TEST_F(PanelWidgets, FollowColumnsThatComeAndGo) {
  const auto panel = made(exampleUtilizationPanel());
  showAndWait(*panel);
  panel->setPanel(examplePairPanel());
  ASSERT_EQ(panel->values().size(), 3u);
  EXPECT_TRUE(panel->values()[2]->isVisible());
  Panel alone = exampleUtilizationPanel();
  alone.columns.pop_back();
  panel->setPanel(alone);
  EXPECT_EQ(panel->values().size(), 1u);
}

TEST_F(PanelWidgets, LookTheSameWhetherChangedOrMadeAnew) {
  const auto panel = made(exampleUtilizationPanel());
  panel->setPanel(examplePairPanel(3));
  EXPECT_EQ(picture(*panel), picture(*made(examplePairPanel(3))));
}

TEST_F(PanelWidgets, HaveRoundCorners) {
  const auto power = made(examplePowerPanel());
  const QImage image = picture(*power);
  for (const QPoint corner : {QPoint(0, 0), QPoint(359, 0), QPoint(0, 159), QPoint(359, 159)}) {
    EXPECT_EQ(image.pixelColor(corner), toColor(colorsOf(ColorScheme::light).window));
  }
  EXPECT_EQ(image.pixelColor(180, 0), toColor(colorsOf(ColorScheme::light).panelBorder));
  EXPECT_EQ(image.pixelColor(5, 80), toColor(colorsOf(ColorScheme::light).panel));
}

TEST_F(PanelWidgets, ChangeAllTheirPartsWithTheScheme) {
  const auto power = made(examplePowerPanel());
  power->setColorScheme(ColorScheme::dark);
  const QImage image = picture(*power);
  const QColor ground = toColor(colorsOf(ColorScheme::dark).panel);
  EXPECT_EQ(image.pixelColor(180, 0), toColor(colorsOf(ColorScheme::dark).panelBorder));
  for (const QPoint point : {QPoint(5, 80), QPoint(200, 15), QPoint(87, 28), QPoint(200, 60)}) {
    EXPECT_EQ(image.pixelColor(point), ground) << point.x() << ' ' << point.y();
  }
}

TEST_F(PanelWidgets, GiveValuesThatComeLaterTheScheme) {
  const auto panel = made(exampleUtilizationPanel());
  panel->setColorScheme(ColorScheme::dark);
  panel->setPanel(examplePairPanel());
  EXPECT_EQ(picture(*panel->values()[0]).pixelColor(99, 5),
            toColor(colorsOf(ColorScheme::dark).panel));
}

TEST_F(PanelWidgets, AskForWhatIsUnderThePointerWithTheirPanel) {
  std::vector<Panel> asked;
  const auto power = made(examplePowerPanel(), [&](double x, double width, const Panel& panel) {
    asked.push_back(panel);
    return exampleReadout(x, width, panel);
  });
  showAndWait(*power);
  power->setPanel(examplePowerPanel(7));
  QTest::mouseMove(&power->graph(), QPoint(100, 40));
  settle();
  ASSERT_FALSE(asked.empty());
  EXPECT_EQ(asked.back(), examplePowerPanel(7));
  EXPECT_TRUE(power->graph().overlay().isVisible());
}

}  // namespace
}  // namespace pallimo::ui::widgets
