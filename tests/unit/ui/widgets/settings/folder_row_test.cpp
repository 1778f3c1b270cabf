// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/folder_row.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/panels/kept_picture.h"
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

/// A desktop whose one icon is that of folders, or one that has none.
class Desktop {
 public:
  enum class Icons { none, ofFolders };

  explicit Desktop(Icons icons) {
    const QDir folder(folder_.path());
    EXPECT_TRUE(folder.mkpath(QStringLiteral("desktop/16x16/places")));
    QFile index(folder.filePath(QStringLiteral("desktop/index.theme")));
    EXPECT_TRUE(index.open(QIODevice::WriteOnly));
    index.write(
        "[Icon Theme]\nName=Desktop\nDirectories=16x16/places\n"
        "[16x16/places]\nSize=16\nType=Fixed\nContext=Places\n");
    index.close();
    if (icons == Icons::ofFolders) {
      QImage green(16, 16, QImage::Format_RGB32);
      green.fill(Qt::green);
      EXPECT_TRUE(green.save(folder.filePath(QStringLiteral("desktop/16x16/places/folder.png"))));
    }
    QIcon::setThemeSearchPaths({folder_.path()});
    QIcon::setFallbackSearchPaths({});
    QIcon::setThemeName(QStringLiteral("desktop"));
  }
  ~Desktop() {
    QIcon::setThemeSearchPaths(searchPaths_);
    QIcon::setFallbackSearchPaths(fallbackPaths_);
    QIcon::setThemeName(name_);
  }

  QString folder() const { return folder_.path(); }

 private:
  const QTemporaryDir folder_;
  const QStringList searchPaths_ = QIcon::themeSearchPaths();
  const QStringList fallbackPaths_ = QIcon::fallbackSearchPaths();
  const QString name_ = QIcon::themeName();
};

TEST_F(FolderRowTest, TakesTheDesktopsIconOfAFolder) {
  const Desktop desktop(Desktop::Icons::ofFolders);
  for (const QString& path : {desktop.folder(), QStringLiteral("/no/such/folder")}) {
    const QImage icon = desktopFolderIcon(path).pixmap(16, 16).toImage();
    ASSERT_FALSE(icon.isNull()) << path.toStdString();
    EXPECT_EQ(icon.pixelColor(8, 8), QColor(Qt::green)) << path.toStdString();
  }
}

TEST_F(FolderRowTest, TakesNoIconWhereTheDesktopHasNone) {
  const Desktop desktop(Desktop::Icons::none);
  EXPECT_TRUE(desktopFolderIcon(desktop.folder()).isNull());
}

}  // namespace
}  // namespace pallimo::ui::widgets
