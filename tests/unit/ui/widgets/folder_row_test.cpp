// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/folder_row.h"

#include <gtest/gtest.h>

#include "ui/widgets/colors.h"
#include "unit/ui/widgets/kept_picture.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class FolderRowTest : public testing::Test {
 protected:
  FolderRowTest() : application_(testApplication()), row_(noIcon, nullptr) {
    row_.resize(290, FolderRow::kHeight);
  }

  static QIcon noIcon(const QString&) { return {}; }

  QApplication& application_;
  FolderRow row_;
};

const QString kLongPath =
    "/home/someone/with/a/very/long/path/that/has/no/room/in/the/window/at/all/logs";

TEST_F(FolderRowTest, ShowsAShortPathWhole) {
  row_.setFolder("/home/me/Desktop");
  EXPECT_EQ(row_.shownPath(), "/home/me/Desktop");
}

TEST_F(FolderRowTest, TakesAwayTheMiddleOfALongPath) {
  row_.setFolder(kLongPath);
  EXPECT_TRUE(row_.shownPath().startsWith("/home/someone"));
  EXPECT_TRUE(row_.shownPath().endsWith("/logs"));
  EXPECT_TRUE(row_.shownPath().contains(QChar(0x2026)));
}

TEST_F(FolderRowTest, TellsTheWholePathInItsToolTipAndAloud) {
  row_.setFolder(kLongPath);
  EXPECT_TRUE(row_.toolTip().contains(kLongPath));
  EXPECT_EQ(row_.accessibleName(), kLongPath);
}

TEST_F(FolderRowTest, TakesNoPathForFormattedText) {
  row_.setFolder("/<b>logs</b>");
  EXPECT_TRUE(row_.toolTip().contains("/&lt;b&gt;logs&lt;/b&gt;"));
  EXPECT_EQ(row_.shownPath(), "/<b>logs</b>");
}

TEST_F(FolderRowTest, DrawsAFolderOfItsOwnWithoutAnIconOfTheDesktop) {
  row_.setFolder("/logs");
  EXPECT_EQ(pictureOf(row_, 1).toImage().pixelColor(8, 10),
            toColor(colorsOf(ColorScheme::light).folder));
}

TEST_F(FolderRowTest, DrawsTheDesktopsIconOfThatFolderInSixteenPoints) {
  QString askedFor;
  QPixmap green(64, 64);
  green.fill(Qt::green);
  FolderRow row(
      [&](const QString& path) {
        askedFor = path;
        return QIcon(green);
      },
      nullptr);
  row.resize(290, FolderRow::kHeight);
  row.setFolder("/logs");
  EXPECT_EQ(askedFor, "/logs");
  const QImage image = pictureOf(row, 1).toImage();
  EXPECT_EQ(image.pixelColor(0, 1), QColor(Qt::green));
  EXPECT_EQ(image.pixelColor(15, 16), QColor(Qt::green));
  EXPECT_NE(image.pixelColor(16, 9), QColor(Qt::green));
  EXPECT_NE(image.pixelColor(8, 0), QColor(Qt::green));
}

TEST_F(FolderRowTest, AsksForTheIconOfTheSameFolderAgain) {
  QPixmap green(64, 64);
  green.fill(Qt::green);
  QIcon icon;
  FolderRow row([&](const QString&) { return icon; }, nullptr);
  row.resize(290, FolderRow::kHeight);
  row.setFolder("/logs");
  icon = QIcon(green);
  row.setFolder("/logs");
  EXPECT_EQ(pictureOf(row, 1).toImage().pixelColor(8, 10), QColor(Qt::green));
}

TEST_F(FolderRowTest, TakesTheThemesIconIfThereIsATheme) {
  EXPECT_EQ(themeFolderIcon("/logs").isNull(), !QIcon::hasThemeIcon("folder"));
}

}  // namespace
}  // namespace pallimo::ui::widgets
