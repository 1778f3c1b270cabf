// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/folder_chooser.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <functional>

#include "unit/ui/widgets/qt_messages.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

using Answer = ChooserResult::Answer;

class FolderChooserTest : public testing::Test {
 protected:
  FolderChooserTest() {
    testApplication();
    // The dialog that is looked into has to be Qt's own.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  }
  ~FolderChooserTest() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    EXPECT_EQ(QtMessages::unexpected(), QStringList());
  }

  std::string folder() const { return folder_.path().toStdString(); }

  /// Opens the chooser and, as soon as it is on the screen, leaves it in that way.
  ChooserResult choose(const std::function<void(QFileDialog&)>& answer) {
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      look.stop();
      answer(*dialog);
    });
    look.start(1);
    QWidget parent;
    return chooseFolder(parent, folder());
  }

  QtMessages messages_;
  QTemporaryDir folder_;
};

TEST_F(FolderChooserTest, OffersFoldersAloneFromTheGivenOneOn) {
  QFileDialog dialog;
  prepareFolderDialog(dialog, folder());
  EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
  EXPECT_TRUE(dialog.testOption(QFileDialog::ShowDirsOnly));
  EXPECT_EQ(dialog.directory(), QDir(folder_.path()));
  EXPECT_EQ(dialog.labelText(QFileDialog::Accept), "Select");
}

TEST_F(FolderChooserTest, HasNoButtonThatZooms) {
  QFileDialog dialog;
  prepareFolderDialog(dialog, folder());
  EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::CustomizeWindowHint));
  EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
}

class Translation : public QTranslator {
 public:
  QString translate(const char*, const char* text, const char*, int) const override {
    return QString(text) == "Select" ? "Auswählen" : QString();
  }
  bool isEmpty() const override { return false; }
};

TEST_F(FolderChooserTest, NamesItsButtonInTheUsersLanguage) {
  Translation translation;
  QCoreApplication::installTranslator(&translation);
  QFileDialog dialog;
  prepareFolderDialog(dialog, folder());
  EXPECT_EQ(dialog.labelText(QFileDialog::Accept), "Auswählen");
  QCoreApplication::removeTranslator(&translation);
}

TEST_F(FolderChooserTest, TellsOfACancelledChoice) {
  const auto result = choose([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(result.answer, Answer::cancelled);
  EXPECT_EQ(result.folder, "");
}

TEST_F(FolderChooserTest, TellsTheFolderOfAConfirmedChoice) {
  const auto result =
      choose([](QFileDialog& dialog) { QMetaObject::invokeMethod(&dialog, "accept"); });
  EXPECT_EQ(result.answer, Answer::confirmed);
  EXPECT_EQ(result.folder, folder());
}

TEST_F(FolderChooserTest, KnowsAFolderFromAFileAndFromNothing) {
  const QString file = folder_.filePath("file");
  ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
  EXPECT_TRUE(isExistingFolder(folder()));
  EXPECT_FALSE(isExistingFolder(file.toStdString()));
  EXPECT_FALSE(isExistingFolder(folder() + "/nothing"));
  EXPECT_FALSE(isExistingFolder(""));
}

}  // namespace
}  // namespace pallimo::ui::widgets
