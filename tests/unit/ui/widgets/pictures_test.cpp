// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <cstdlib>

#include "ui/widgets/colors.h"
#include "ui/widgets/main_title_widget.h"
#include "ui/widgets/more_button.h"
#include "ui/widgets/panel_widget.h"
#include "unit/ui/widgets/example_panels.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kEdge = 10;
constexpr int kBetween = 8;
constexpr int kHeader = 64;

/// A window's content as it will be laid out, with figures of our own.
class ExampleWindow : public QWidget {
 public:
  ExampleWindow(const std::vector<Panel>& panels, ColorScheme scheme) {
    QPalette colors;
    colors.setColor(QPalette::Window, toColor(colorsOf(scheme).window));
    setPalette(colors);
    auto* title = new MainTitleWidget(exampleTitle(), this);
    title->setGeometry(QRect(QPoint(14, 8), title->sizeHint()));
    title->setColorScheme(scheme);
    auto* more = new MoreButton([] { return std::vector<MenuItem>(); }, this);
    more->move(344, kEdge);
    more->setColorScheme(scheme);
    int y = kHeader;
    for (const Panel& panel : panels) {
      auto* widget = new PanelWidget(panel, nullptr, this);
      widget->setColorScheme(scheme);
      widget->setGeometry(QRect(QPoint(kEdge, y), widget->sizeHint()));
      y += widget->height() + kBetween;
    }
    setFixedSize(PanelWidget::kWidth + 2 * kEdge, y - kBetween + kEdge);
  }
};

QPixmap picture(QWidget& widget, double ratio) {
  QPixmap image(widget.size() * ratio);
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

TEST(Pictures, ShowTheFourPanelsInBothSchemesAtEveryRatio) {
  testApplication();
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
      ExampleWindow window(examplePanels(), scheme);
      const QPixmap image = picture(window, ratio);
      EXPECT_EQ(image.size(), window.size() * ratio);
      keep(image,
           QString("panels-%1-%2x").arg(scheme == ColorScheme::dark ? "dark" : "light").arg(ratio));
    }
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
