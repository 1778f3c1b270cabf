// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "end_to_end/window/window_app.h"
#include "ui/display_settings.h"
#include "ui/widgets/settings/folder_row.h"

namespace pallimo::end_to_end {
namespace {

/// The folder for logs, chosen in the dialog that "Select" opens.
class LogFolder : public WindowApp {
 protected:
  LogFolder() {
    // The dialog that is looked into has to be Qt's own.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    fs::create_directory(chosen);
  }
  ~LogFolder() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); }

  void startWithSettings() {
    startApp();
    choose("Settings...");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&settings()));
  }
  /// Clicks "Select" and, once the dialog is on the screen, does that to it.
  void select(const std::function<void(QFileDialog&)>& answer) {
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || !dialog->isVisible()) return;
      look.stop();
      openedIn_ = dialog->directory().absolutePath().toStdString();
      answer(*dialog);
    });
    look.start(1);
    click(settings().general().select());
    widgets::settle();
  }
  /// What the user pastes into the dialog before leaving it.
  static void paste(QFileDialog& dialog, const fs::path& path) {
    auto* line = dialog.findChild<QLineEdit*>();
    line->selectAll();
    QApplication::clipboard()->setText(QString::fromStdString(path));
    QTest::keyClick(line, Qt::Key_V, Qt::ControlModifier);
    // The list of proposals would take the next click.
    if (QWidget* proposals = QApplication::activePopupWidget()) proposals->close();
  }
  static void clickOn(const QFileDialog& dialog, const QString& text) {
    for (auto* found : dialog.findChildren<QPushButton*>()) {
      if (found->text().remove('&') == text) return QTest::mouseClick(found, Qt::LeftButton);
    }
    ADD_FAILURE() << "no button " << text.toStdString();
  }

  std::optional<std::string> stored() const {
    return platform().defaults.textForKey(ui::settings_key::kPathFolderLocation);
  }
  std::string shownFolder() const {
    return settings().general().folder().accessibleName().toStdString();
  }
  const std::string& openedIn() const { return openedIn_; }

  const fs::path chosen = home / "logs of mine";

 private:
  std::string openedIn_;
};

TEST_F(LogFolder, IsTheDesktopWithoutAChoice) {
  startWithSettings();
  EXPECT_EQ(shownFolder(), desktop());
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(LogFolder, CancelledChoiceChangesNothing) {
  startWithSettings();
  select([this](QFileDialog& dialog) {
    paste(dialog, chosen);
    clickOn(dialog, "Cancel");
  });
  EXPECT_EQ(openedIn(), desktop());
  EXPECT_EQ(stored(), std::nullopt);
  EXPECT_EQ(shownFolder(), desktop());
}

TEST_F(LogFolder, EscapeIsACancelledChoice) {
  startWithSettings();
  platform().defaults.setText(ui::settings_key::kPathFolderLocation, chosen.string());
  select([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(openedIn(), chosen);
  EXPECT_EQ(stored(), chosen);
}

TEST_F(LogFolder, ConfirmedChoiceIsStoredShownAndKept) {
  startWithSettings();
  select([this](QFileDialog& dialog) {
    paste(dialog, chosen);
    clickOn(dialog, "Select");
  });
  EXPECT_EQ(stored(), chosen);
  EXPECT_TRUE(soon([this] { return shownFolder() == chosen; }));
  EXPECT_EQ(general().logfileModel()->folderUseForSaving(), chosen);
  restartApp();
  choose("Settings...");
  EXPECT_EQ(stored(), chosen);
  EXPECT_EQ(shownFolder(), chosen);
}

TEST_F(LogFolder, ThatIsGoneIsStillTheModelsAndStaysStored) {
  startWithSettings();
  platform().defaults.setText(ui::settings_key::kPathFolderLocation, chosen.string());
  ASSERT_TRUE(soon([this] { return shownFolder() == chosen; }));
  fs::remove(chosen);
  restartApp();
  choose("Settings...");
  EXPECT_EQ(stored(), chosen);
  EXPECT_EQ(shownFolder(), chosen);  // the log's model still holds it
}

TEST_F(LogFolder, EmptyTextGivesWayToWhatTheModelMakesOfIt) {
  startWithSettings();
  platform().defaults.setText(ui::settings_key::kPathFolderLocation, "");
  EXPECT_TRUE(soon([this] { return shownFolder() == "/"; }));
  EXPECT_EQ(general().logfileModel()->folderUseForSaving(), "/");
  EXPECT_EQ(stored(), "");
}

TEST_F(LogFolder, AppGoesOnWhileTheChooserIsOpen) {
  installHelper();
  startWithSettings();
  activate(window());
  ASSERT_TRUE(becomesLive());
  activate(settings());
  select([this](QFileDialog& dialog) {
    EXPECT_TRUE(samples(3));
    dialog.reject();
  });
}

}  // namespace
}  // namespace pallimo::end_to_end
