// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/app_icon.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPixmap>
#include <string>
#include <utility>

#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

QString iconFolder() { return QStringLiteral(PALLIMO_SOURCE_DIR "/packaging/icon/"); }

QImage drawn(const std::string& name) {
  return QImage(iconFolder() + "pallimo.iconset/" + QString::fromStdString(name));
}

QIcon iconOfTheApp() {
  testApplication();
  return appIcon();
}

bool isAmber(const QColor& color) {
  return color.red() > 220 && color.green() > 140 && color.green() < 210 && color.blue() < 120;
}

TEST(AppIcon, IsDrawnInTheTenSizesOfAMacsIcon) {
  for (const int points : {16, 32, 128, 256, 512}) {
    const std::string name = "icon_" + std::to_string(points) + "x" + std::to_string(points);
    EXPECT_EQ(drawn(name + ".png").size(), QSize(points, points)) << name;
    EXPECT_EQ(drawn(name + "@2x.png").size(), 2 * QSize(points, points)) << name;
  }
}

TEST(AppIcon, IsClearAroundItsRoundedSquare) {
  for (const char* name : {"icon_16x16.png", "icon_32x32.png", "icon_512x512.png"}) {
    const QImage image = drawn(name);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << name;
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 2).alpha(), 255) << name;
  }
}

TEST(AppIcon, KeepsItsDotAtSixteenPixels) {
  const QImage image = drawn("icon_16x16.png");
  EXPECT_TRUE(isAmber(image.pixelColor(11, 6)));
  EXPECT_TRUE(isAmber(image.pixelColor(10, 6)));
}

TEST(AppIcon, ComesOutOfTheProgramInEachSize) {
  EXPECT_EQ(iconOfTheApp().availableSizes().size(), std::size(kAppIconSizes));
  for (const int size : kAppIconSizes) {
    const QImage image = iconOfTheApp().pixmap(QSize(size, size), 1).toImage();
    EXPECT_EQ(image.size(), QSize(size, size));
    EXPECT_EQ(image.pixelColor(size / 2, size / 2).alpha(), 255) << size;
  }
}

TEST(AppIcon, IsTheDrawnOne) {
  const QImage shown = iconOfTheApp().pixmap(QSize(128, 128), 1).toImage();
  EXPECT_EQ(shown.convertToFormat(QImage::Format_ARGB32_Premultiplied),
            drawn("icon_128x128.png").convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

TEST(AppIcon, IsNamedByTheDesktopEntry) {
  QFile entry(QStringLiteral(PALLIMO_SOURCE_DIR "/packaging/linux/pallimo.desktop"));
  ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(entry.readAll());
  EXPECT_TRUE(text.contains(QStringLiteral("\nIcon=pallimo\n")));
  EXPECT_TRUE(text.contains(QStringLiteral("\nExec=pallimo\n")));
}

}  // namespace
}  // namespace pallimo::ui::widgets
