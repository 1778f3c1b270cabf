// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <mutex>
#include <sstream>

#include "end_to_end/window/window_app.h"
#include "logging/log_file_data.h"
#include "ui/display_settings.h"

namespace pallimo::end_to_end {
namespace {

/// Rows that the app has distributed. Any thread.
class RowBook {
 public:
  void add(const logging::LogRow& row) {
    const std::lock_guard lock(mutex_);
    rows_.push_back(row);
  }
  std::vector<logging::LogRow> rows() const {
    const std::lock_guard lock(mutex_);
    return rows_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<logging::LogRow> rows_;
};

/// Logs that are recorded by clicks and keys, and read back from their files.
class Log : public WindowApp {
 protected:
  using Lines = std::vector<std::string>;

  void startLiveWithBook() {
    startLive();
    general().sampleRows()->addReceiver(
        [book = book_](const logging::LogRow& row) { book->add(row); });
  }
  bool isOn() const { return general().logfileModel()->isLogEnabled(); }

  static std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path());
    return files;
  }
  static bool isWrittenTo(const fs::path& folder) {
    return soon([&] {
      const auto files = filesIn(folder);
      return files.size() == 1 && files[0].extension() == ".csv";
    });
  }
  static Lines linesOf(const fs::path& file) {
    std::istringstream text(contents(file));
    Lines lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }
  /// The file's rows are those that were distributed, from one of them on, without a gap.
  void expectToHold(const Lines& lines, std::size_t least) const {
    ASSERT_GE(lines.size(), least + 1);
    EXPECT_EQ(lines[0], logging::kCsvHeader);
    const auto rows = book_->rows();
    for (std::size_t first = 0; first + lines.size() - 1 <= rows.size(); ++first) {
      if (logging::csvLine(logging::formatRow(rows[first], rows[first].time)) != lines[1]) continue;
      for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i],
                  logging::csvLine(logging::formatRow(rows[first + i - 1], rows[first].time)));
      }
      return;
    }
    FAIL() << "nobody was told of the first row: " << lines[1];
  }

 private:
  const std::shared_ptr<RowBook> book_ = std::make_shared<RowBook>();
};

TEST_F(Log, IsRecordedByTwoClicksInTheMenu) {
  startLiveWithBook();
  choose("Log to file");
  ASSERT_TRUE(isOn());
  ASSERT_TRUE(samples(4));
  EXPECT_TRUE(filesIn(desktop()).empty());  // nothing before it is switched off
  choose("Log to file");
  EXPECT_FALSE(isOn());
  ASSERT_TRUE(isWrittenTo(desktop()));
  const fs::path file = filesIn(desktop())[0];
  EXPECT_EQ(file.filename().string().rfind("PwrData ", 0), 0u) << file;
  expectToHold(linesOf(file), 4);
}

TEST_F(Log, TellsOfItsStartAndOfWhereItIs) {
  startLive();
  testing::internal::CaptureStdout();  // the app's console, in a desktop's place
  choose("Log to file");
  choose("Log to file");
  // Kept until the user is told.
  ASSERT_TRUE(
      soon([this] { return !general().logfileModel()->filenameToUseForSaving().has_value(); }));
  endApp();
  const std::string said = testing::internal::GetCapturedStdout();
  const auto files = filesIn(desktop());
  ASSERT_EQ(files.size(), 1u);
  const auto start =
      said.find("Logging started: The log file will be written when logging is stopped.\n");
  const auto end = said.find("Logging ended: Saved at: " + files[0].string() + "\n");
  ASSERT_NE(start, std::string::npos) << said;
  ASSERT_NE(end, std::string::npos) << said;
  EXPECT_LT(start, end);
}

TEST_F(Log, IsRecordedByTheShortcut) {
  startLiveWithBook();
  press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_TRUE(isOn());
  ASSERT_TRUE(samples(3));
  press(Qt::Key_L, Qt::ControlModifier);
  EXPECT_FALSE(isOn());
  ASSERT_TRUE(isWrittenTo(desktop()));
  expectToHold(linesOf(filesIn(desktop())[0]), 3);
}

TEST_F(Log, IsRecordedByTheMenuBarsItem) {
  startLiveWithBook();
  QAction* const toggle = window().mainMenuBar().menus().at(2)->actions().at(0);
  ASSERT_EQ(toggle->text(), "Log to file");
  for (const bool wanted : {true, false}) {
    press(Qt::Key_F10);
    auto* bar = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(bar, nullptr);
    for (int keys = 0; keys < 3; ++keys) QTest::keyClick(bar, Qt::Key_Down);
    QTest::keyClick(bar, Qt::Key_Right);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    EXPECT_EQ(isOn(), wanted);
    EXPECT_EQ(toggle->isChecked(), wanted);
    ASSERT_TRUE(samples(2));
  }
  ASSERT_TRUE(isWrittenTo(desktop()));
  expectToHold(linesOf(filesIn(desktop())[0]), 2);
}

TEST_F(Log, ShortcutWorksInTheSettingsToo) {
  startLiveWithBook();
  choose("Settings...");
  ASSERT_TRUE(QTest::qWaitForWindowActive(&settings()));
  press(Qt::Key_L, Qt::ControlModifier);
  EXPECT_TRUE(isOn());
}

TEST_F(Log, GoesIntoTheChosenFolder) {
  const fs::path chosen = home / "logs";
  fs::create_directory(chosen);
  startLiveWithBook();
  platform().defaults.setText(ui::settings_key::kPathFolderLocation, chosen.string());
  press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_TRUE(samples(2));
  press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_TRUE(isWrittenTo(chosen));
  expectToHold(linesOf(filesIn(chosen)[0]), 2);
  EXPECT_TRUE(filesIn(desktop()).empty());
}

TEST_F(Log, GoesOnBehindAHiddenWindow) {
  startLiveWithBook();
  choose("Log to file");
  window().hide();
  ASSERT_TRUE(samples(3));
  window().show();
  activate(window());
  choose("Log to file");
  ASSERT_TRUE(isWrittenTo(desktop()));
  expectToHold(linesOf(filesIn(desktop())[0]), 3);
}

TEST_F(Log, ThatCannotBeWrittenStopsNothing) {
  startLiveWithBook();
  fs::remove(desktop());
  testing::internal::CaptureStdout();  // the app's console
  choose("Log to file");
  ASSERT_TRUE(samples(2));
  choose("Log to file");
  ASSERT_TRUE(
      soon([this] { return !general().logfileModel()->filenameToUseForSaving().has_value(); }));
  ASSERT_TRUE(samples(2));
  endApp();
  const std::string said = testing::internal::GetCapturedStdout();
  EXPECT_NE(said.find("error "), std::string::npos);
  EXPECT_NE(said.find("Logging ended: Saved at: "), std::string::npos);
}

}  // namespace
}  // namespace pallimo::end_to_end
