// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Rows from the delivery thread, the switch on another, files on threads of their own.

#include <algorithm>
#include <atomic>
#include <map>
#include <thread>
#include <utility>

#include "fakes/fake_user_notifications.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_file_store.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_file_model.h"
#include "unit/logging/log_reader.h"

namespace pallimo::logging {
namespace {

/// A thread for every task, side by side; its end waits for all of them.
class ThreadsBackgroundQueue final : public ports::BackgroundQueue {
 public:
  ~ThreadsBackgroundQueue() override { wait(); }
  void async(std::function<void()> task) override {
    base::MutexLock lock(mutex_);
    threads_.emplace_back(std::move(task));
  }
  /// When nobody queues any more.
  void wait() {
    std::vector<std::thread> threads;
    {
      base::MutexLock lock(mutex_);
      threads.swap(threads_);
    }
    for (std::thread& thread : threads) thread.join();
  }

 private:
  base::Mutex mutex_;
  std::vector<std::thread> threads_ PALLIMO_GUARDED_BY(mutex_);
};

struct ThreadsFixture {
  fakes::ManualMainQueue mainQueue;
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryFileStore files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications notifications;
  fakes::ScriptedRandomNumbers random;
  ThreadsBackgroundQueue backgroundQueue;
  std::shared_ptr<LogFileModel> model = LogFileModel::create(
      {mainQueue, backgroundQueue, defaults, files, clock, console, notifications, random});
};

LogRow numbered(int number) {
  LogRow row;
  row.time = std::chrono::system_clock::time_point(std::chrono::seconds(number));
  for (double* field :
       {&row.pkgPower, &row.cpuPower, &row.dramPower, &row.anePower, &row.gpuPower,
        &row.cpuECoreFrequency, &row.cpuPCoreFrequency, &row.gpuFrequency, &row.cpuMinTmp,
        &row.cpuAvgTmp, &row.cpuMaxTmp, &row.gpuAvgTmp, &row.cpuUtilization, &row.cpuEUtilization,
        &row.cpuPUtilization, &row.gpuUtilization}) {
    *field = number;
  }
  return row;
}

/// Where the switch is: 0 before the first log; then for the k-th one 4k - 3 while it is being
/// switched on, 4k - 2 while it is on, 4k - 1 while it is being switched off, 4k when it is over.
using Phase = std::atomic<int>;

/// The logs in which a row may stand that was appended between two phases.
struct PossibleLogs {
  int earliest = 0;
  int latest = 0;  ///< below earliest: the row may stand nowhere
  bool isCertain = false;

  PossibleLogs(int before, int after)
      : earliest(before / 4 + 1),
        latest((after + 3) / 4),
        isCertain(before == after && before % 4 == 2) {}
};

/// Delivers rows numbered 1, 2, 3 ... until its end, and remembers for each where it may stand.
class Delivery {
 public:
  Delivery(LogFileModel& model, const Phase& phase)
      : model_(model), phase_(phase), thread_([this] { run(); }) {}
  ~Delivery() { end(); }

  /// Until `count` more rows have been appended. A model that blocks ends the program: its thread
  /// could not be joined.
  void wait(int count) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    const int from = delivered_;
    while (delivered_ < from + count) {
      if (std::chrono::steady_clock::now() > deadline) GTEST_LOG_(FATAL) << "appendRow() blocks";
      std::this_thread::yield();
    }
  }
  void end() {
    isOver_ = true;
    if (thread_.joinable()) thread_.join();
  }
  /// After the end; the row with number n at n - 1.
  const std::vector<PossibleLogs>& possible() const { return possible_; }

 private:
  void run() {
    for (int number = 1; !isOver_; ++number) {
      const int before = phase_;
      model_.appendRow(numbered(number));
      possible_.emplace_back(before, phase_);
      ++delivered_;
      // So that a machine with few processors does not collect rows for a whole time slice.
      if (number % 8 == 0) std::this_thread::yield();
    }
  }

  LogFileModel& model_;
  const Phase& phase_;
  std::vector<PossibleLogs> possible_;
  std::atomic<int> delivered_ = 0;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;  // last: it starts when everything else stands
};

/// The row's number; 0 when its figures are not all of one row.
int numberOf(const tests::LogReader& log, std::size_t row) {
  const int number = static_cast<int>(log.number(row, 2));
  for (std::size_t column = 2; column < 18; ++column) {
    if (log.number(row, column) != number) return 0;
  }
  return number;
}

/// Where each row stands, logs counted from 1 in the order in which they were written.
std::map<int, int> logsByRow(const fakes::MemoryFileStore& files) {
  const auto texts = files.files();
  std::map<int, int> logs;
  int log = 0;
  for (const std::string& path : files.writes()) {
    const tests::LogReader reader(texts.at(path));
    ++log;
    int previous = 0;
    for (std::size_t row = 0; row < reader.rows(); ++row) {
      const int number = numberOf(reader, row);
      EXPECT_GT(number, previous) << "torn, or not in order";
      EXPECT_TRUE(logs.emplace(number, log).second) << number << " stands twice";
      previous = number;
    }
  }
  return logs;
}

void expectEveryRowInItsPlace(const std::vector<PossibleLogs>& rows,
                              const std::map<int, int>& logs) {
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const int number = static_cast<int>(index) + 1;
    const auto found = logs.find(number);
    ASSERT_FALSE(rows[index].isCertain && found == logs.end()) << number << " is lost";
    if (found == logs.end()) continue;
    ASSERT_GE(found->second, rows[index].earliest) << number;
    ASSERT_LE(found->second, rows[index].latest) << number;
  }
}

TEST(LogFileModelThreads, NoRowIsLostDoubledOrTornWhileLoggingIsSwitched) {
  constexpr int kLogs = 1000;
  ThreadsFixture f;
  Phase phase = 0;
  Delivery delivery(*f.model, phase);
  for (int log = 0; log < kLogs; ++log) {
    f.clock.advance(std::chrono::seconds(1));
    ++phase;
    f.model->setLogEnabled(true);
    ++phase;
    delivery.wait(5);
    ++phase;
    f.model->setLogEnabled(false);
    ++phase;
    // Every other log follows the one before at once.
    if (log % 2 == 0) delivery.wait(2);
  }
  delivery.end();
  f.backgroundQueue.wait();
  EXPECT_EQ(f.files.writes().size(), static_cast<std::size_t>(kLogs));
  expectEveryRowInItsPlace(delivery.possible(), logsByRow(f.files));
  const auto certain =
      std::count_if(delivery.possible().begin(), delivery.possible().end(),
                    [](const PossibleLogs& possible) { return possible.isCertain; });
  EXPECT_GE(certain, kLogs);
}

TEST(LogFileModelThreads, EveryNoticeNamesAFileOfItsOwn) {
  constexpr int kLogs = 100;
  ThreadsFixture f;
  for (int log = 0; log < kLogs; ++log) {
    f.clock.advance(std::chrono::seconds(1));
    f.model->setLogEnabled(true);
    f.model->setLogEnabled(false);
  }
  f.backgroundQueue.wait();
  f.mainQueue.run();
  std::vector<std::string> named;
  for (const auto& notice : f.notifications.added()) {
    if (notice.title == "Logging ended") named.push_back(notice.subtitle.substr(10));
  }
  EXPECT_EQ(named, f.files.writes());
  EXPECT_EQ(f.files.files().size(), static_cast<std::size_t>(kLogs));
}

TEST(LogFileModelThreads, TheFolderIsThatOfTheLastChangeWhoeverMadeIt) {
  for (int round = 0; round < 200; ++round) {
    ThreadsFixture f;
    std::thread first([&f] { f.defaults.setText("pathFolderLocation", "/first"); });
    std::thread second([&f] { f.defaults.setText("pathFolderLocation", "/second"); });
    first.join();
    second.join();
    ASSERT_EQ(f.model->folderUseForSaving(), f.defaults.textForKey("pathFolderLocation"));
  }
}

/// Settings in which a reader is overtaken: between its look and its return another thread makes a
/// change.
class OvertakenDefaults final : public ports::UserDefaults {
 public:
  std::optional<std::string> textForKey(std::string_view key) const override {
    auto text = settings_.textForKey(key);
    if (const auto change = std::exchange(change_, nullptr)) std::thread(change).join();
    return text;
  }
  void overtakeNextReader(std::function<void()> change) { change_ = std::move(change); }

  bool contains(std::string_view key) const override { return settings_.contains(key); }
  bool boolForKey(std::string_view key) const override { return settings_.boolForKey(key); }
  std::int64_t integerForKey(std::string_view key) const override {
    return settings_.integerForKey(key);
  }
  double doubleForKey(std::string_view key) const override { return settings_.doubleForKey(key); }
  void setBool(std::string_view key, bool value) override { settings_.setBool(key, value); }
  void setInteger(std::string_view key, std::int64_t value) override {
    settings_.setInteger(key, value);
  }
  void setText(std::string_view key, std::string_view value) override {
    settings_.setText(key, value);
  }
  void remove(std::string_view key) override { settings_.remove(key); }
  base::Subscription observeChanges(std::function<void()> observer) override {
    return settings_.observeChanges(std::move(observer));
  }

 private:
  fakes::MemoryUserDefaults settings_;
  mutable std::function<void()> change_;
};

TEST(LogFileModelThreads, AReaderThatWasOvertakenDoesNotBringTheOldFolderBack) {
  ThreadsFixture f;
  OvertakenDefaults defaults;
  const auto model = LogFileModel::create({f.mainQueue, f.backgroundQueue, defaults, f.files,
                                           f.clock, f.console, f.notifications, f.random});
  defaults.overtakeNextReader([&] { defaults.setText("pathFolderLocation", "/new"); });
  defaults.setText("pathFolderLocation", "/old");
  EXPECT_EQ(model->folderUseForSaving(), "/new");
}

TEST(LogFileModelThreads, ItsStateMayBeReadWhileItChanges) {
  ThreadsFixture f;
  std::atomic<bool> hasLooked = false;
  std::atomic<bool> isOver = false;
  std::thread reader([&] {
    for (; !isOver; hasLooked = true) {
      const auto name = f.model->filenameToUseForSaving();
      EXPECT_TRUE(!name || name->starts_with("PwrData "));
      f.model->lastTimeStamp();
      f.model->folderUseForSaving();
      f.model->isLogEnabled();
    }
  });
  while (!hasLooked) std::this_thread::yield();
  for (int log = 0; log < 100; ++log) {
    f.model->setLogEnabled(true);
    f.model->appendRow(numbered(log));
    f.model->setLogEnabled(false);
    f.mainQueue.run();
  }
  isOver = true;
  reader.join();
}

}  // namespace
}  // namespace pallimo::logging
