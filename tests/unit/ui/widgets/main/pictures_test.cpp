// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QPixmap>
#include <QString>
#include <QTest>
#include <QWidget>
#include <cstdlib>
#include <tuple>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/menu_building.h"
#include "ui/widgets/main/main_title_widget.h"
#include "ui/widgets/main/more_button.h"
#include "ui/widgets/panels/graph_widget.h"
#include "ui/widgets/panels/panel_widget.h"
#include "ui/widgets/panels/value_widget.h"
#include "unit/ui/counting_random.h"
#include "unit/ui/widgets/panels/example_panels.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kEdge = 10;
constexpr int kBetween = 8;
constexpr int kHeader = 64;

/// Whether something stands in that part of a picture, which is given in points.
bool isWritten(const QPixmap& image, const QRect& part) {
  const double ratio = image.devicePixelRatio();
  const QRectF pixels(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio);
  const QImage area = image.toImage().copy(pixels.toAlignedRect());
  QImage blank = area;
  blank.fill(area.pixelColor(0, 0));
  return area != blank;
}

/// A window's content as it will be laid out, with figures of our own.
class ExampleWindow : public QWidget {
 public:
  ExampleWindow(const std::vector<Panel>& panels, const MainTitleContent& content,
                ColorScheme scheme) {
    QPalette colors;
    colors.setColor(QPalette::Window, toColor(colorsOf(scheme).window));
    setPalette(colors);
    auto* title = new MainTitleWidget(content, this);
    title->setGeometry(QRect(QPoint(14, 8), title->sizeHint()));
    title->setColorScheme(scheme);
    auto* more = new MoreButton([] { return std::vector<MenuItem>(); }, this);
    more->move(344, kEdge);
    more->setColorScheme(scheme);
    int y = kHeader;
    for (const Panel& panel : panels) {
      auto* widget = new PanelWidget(panel, &exampleReadout, this);
      widget->setColorScheme(scheme);
      widget->setGeometry(QRect(QPoint(kEdge, y), widget->sizeHint()));
      y += widget->height() + kBetween;
      panels_.push_back(widget);
    }
    setFixedSize(PanelWidget::kWidth + 2 * kEdge, y - kBetween + kEdge);
  }

  const std::vector<PanelWidget*>& panels() const { return panels_; }
  /// Each part that something has to stand in: figures, boxes and axis labels.
  std::vector<QRect> parts() const {
    std::vector<QRect> parts;
    for (PanelWidget* panel : panels_) {
      for (const ValueWidget* value : panel->values()) {
        parts.emplace_back(value->mapTo(this, QPoint(0, 0)), value->size());
      }
      const GraphWidget& graph = panel->graph();
      const QRect box = graph.box().translated(graph.mapTo(this, QPoint(0, 0)));
      parts.push_back(box.adjusted(1, 1, -1, -1));
      parts.emplace_back(box.right() + 2, box.top() - 5, GraphWidget::kLabelRoom - 2, 10);
    }
    return parts;
  }

 private:
  std::vector<PanelWidget*> panels_;
};

QPixmap picture(QWidget& widget, double ratio) {
  QPixmap image((QSizeF(widget.size()) * ratio).toSize());
  image.setDevicePixelRatio(ratio);
  widget.render(&image);
  return image;
}

// Set PALLIMO_PICTURES to a folder to look at what is painted.
void keep(const QPixmap& image, const QString& name) {
  if (const char* folder = std::getenv("PALLIMO_PICTURES")) {
    ASSERT_TRUE(image.save(QString::fromLocal8Bit(folder) + '/' + name + ".png"));
  }
}

class Pictures : public testing::TestWithParam<std::tuple<ColorScheme, double>> {
 protected:
  Pictures() { testApplication(); }

  static ColorScheme scheme() { return std::get<0>(GetParam()); }

  static void check(ExampleWindow& widget, const QString& subject) {
    const double ratio = std::get<1>(GetParam());
    const QPixmap image = picture(widget, ratio);
    EXPECT_EQ(image.toImage().pixelColor(1, 1), toColor(colorsOf(scheme()).window));
    for (const QRect& part : widget.parts()) {
      EXPECT_TRUE(isWritten(image, part)) << part.x() << ' ' << part.y();
    }
    keep(image, name(subject));
  }

  static QString name(const QString& subject) {
    return subject + (scheme() == ColorScheme::dark ? "-dark-" : "-light-") +
           QString::number(std::get<1>(GetParam())) + 'x';
  }
};

INSTANTIATE_TEST_SUITE_P(Schemes, Pictures,
                         testing::Combine(testing::Values(ColorScheme::light, ColorScheme::dark),
                                          testing::Values(1.0, 1.5, 2.0)));

TEST_P(Pictures, ShowTheFourPanels) {
  ExampleWindow window(examplePanels(), exampleTitle(), scheme());
  check(window, "panels");
}

TEST_P(Pictures, ShowTheWidestFigures) {
  ExampleWindow window(widestPanels(), longestTitle(), scheme());
  check(window, "widest");
}

TEST_P(Pictures, ShowTheMenu) {
  QMenu menu;
  CountingRandom random;
  const SwitchBinding log{[] { return true; }, [](bool) {}};
  const auto nothing = [] {};
  fillMenu(menu,
           moreButtonMenu({nothing, nothing, log, nothing, nothing, nothing, nothing, nothing},
                          false, random),
           scheme());
  menu.resize(menu.sizeHint());
  menu.setActiveAction(menu.actions()[4]);
  const QPixmap image = picture(menu, std::get<1>(GetParam()));
  for (QAction* row : menu.actions()) EXPECT_TRUE(isWritten(image, menu.actionGeometry(row)));
  keep(image, name("menu"));
}

TEST_P(Pictures, ShowWhatIsUnderThePointer) {
  ExampleWindow window(examplePanels(), exampleTitle(), scheme());
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QTest::mouseMove(&window.panels()[2]->graph(), QPoint(130, 40));
  check(window, "pointer");
}

}  // namespace
}  // namespace pallimo::ui::widgets
