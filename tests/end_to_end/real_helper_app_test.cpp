// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <filesystem>
#include <future>
#include <iterator>
#include <mutex>
#include <string>

#include "end_to_end/real_helper_app.h"
#include "helper_link/xpc_client.h"

// The life of the helper as the app's own core drives it: installed, removed, updated, lost.

namespace pallimo::end_to_end {
namespace {

using ui::MainContent;

class HelperLifeTest : public RealHelperApp {
 protected:
  /// A fresh start, the press of the install button, and samples.
  void installAndSample() {
    startApp();
    EXPECT_EQ(content(), MainContent::install);
    press();
    EXPECT_TRUE(runUntilContentIs(MainContent::live));
    EXPECT_TRUE(runUntilRows(rows() + 3));
  }

  /// Everything that is on its way through the delivery thread at this moment has arrived.
  bool drainDelivery() {
    std::atomic<bool> isDrained = false;
    delivery->post([&isDrained] { isDrained = true; });
    return runUntil([&isDrained] { return isDrained.load(); });
  }

  /// A run that the helper has started, held so that it stays under way.
  Process heldRun(const Process& process) {
    pid_t held = 0;
    EXPECT_TRUE(runUntil([&] {
      for (const pid_t run : process.children()) {
        kill(run, SIGSTOP);
        if (isStopped(run)) held = run;
      }
      return held != 0;
    }));
    return Process(held);
  }
  static bool isStopped(pid_t process) {
    const std::string line = contents("/proc/" + std::to_string(process) + "/stat");
    const auto end = line.rfind(") ");
    return end != std::string::npos && line[end + 2] == 'T';
  }

  /// The app's bundle is one whose embedded helper tells this version; the installed helper says
  /// that it has the other.
  void planVersions(const std::string& embedded, const std::string& said) {
    const fs::path plist = "Contents/Library/LaunchServices/com.ostrovane.powermetrics.plist";
    std::string text = contents(PALLIMO_BIN_DIR / plist);
    const std::string key = "<key>CFBundleShortVersionString</key>";
    const auto begin = text.find("<string>", text.find(key)) + std::string("<string>").size();
    text.replace(begin, text.find("</string>", begin) - begin, embedded);
    bundleFolder = folder.path() + "/bundle";
    fs::create_directories((bundleFolder / plist).parent_path());
    std::ofstream(bundleFolder / plist) << text;
    const fs::path program = fs::path(plist).replace_extension();  // without one it is no bundle
    fs::copy_file(PALLIMO_BIN_DIR / program, bundleFolder / program);
    adapters::simulated::Simulation simulation;
    simulation.machine = "MacBook Pro M2 Pro";
    simulation.speed = kSpeed;
    simulation.faults.helperVersion = said;
    EXPECT_EQ(adapters::simulated::writeSimulation(folder.simulationFile(), simulation), "");
  }

  /// Requests the removal; returns when nothing can be sampled any more.
  void requestRemoval() {
    manager().uninstallHelper();
    EXPECT_TRUE(runUntil([this] { return manager().isRequestedToUninstall(); }));
    EXPECT_TRUE(drainDelivery());
  }
};

TEST_F(HelperLifeTest, AFreshInstallationSamples) {
  installAndSample();
  EXPECT_EQ(contents(folder.installedHelper()), contents(kEmbeddedHelper));
}

TEST_F(HelperLifeTest, AHelperOfTheSameVersionIsUsedWithoutAnInstallation) {
  installHelper();
  startApp();
  EXPECT_TRUE(runUntilContentIs(MainContent::live));
  EXPECT_TRUE(runUntilRows(3));
}

TEST_F(HelperLifeTest, OnceItsRemovalIsRequestedNoSampleIsDistributed) {
  installAndSample();
  const Process run = heldRun(helper());
  requestRemoval();
  EXPECT_EQ(content(), MainContent::live);
  const std::size_t before = rows();
  run.send(SIGCONT);  // its document comes before the helper is told to go
  ASSERT_TRUE(runUntilContentIs(MainContent::install));
  EXPECT_EQ(rows(), before);
}

TEST_F(HelperLifeTest, ARemovedHelperLeavesNeitherProcessNorFile) {
  installAndSample();
  const Process process = helper();
  requestRemoval();
  ASSERT_TRUE(runUntilContentIs(MainContent::install));
  EXPECT_TRUE(process.ends());
  EXPECT_FALSE(fs::exists(folder.installedHelper()));
  EXPECT_FALSE(fs::exists(folder.helperSocket()));
}

TEST_F(HelperLifeTest, ARemovedHelperTakesNobodyElsesFilesAlong) {
  installAndSample();
  const fs::path beside = fs::path(folder.installedHelper()).parent_path() / "com.other.helper";
  const fs::path above = folder.path() + "/notes.txt";
  std::ofstream(beside) << "another's";
  std::ofstream(above) << "another's";
  requestRemoval();
  ASSERT_TRUE(runUntilContentIs(MainContent::install));
  EXPECT_FALSE(fs::exists(folder.installedHelper()));
  EXPECT_EQ(contents(beside), "another's");
  EXPECT_EQ(contents(above), "another's");
}

TEST_F(HelperLifeTest, AVersionInAnotherCaseIsAnotherVersion) {
  installHelper();
  planVersions("0.1.0b", "0.1.0B");
  startApp();
  EXPECT_TRUE(runUntilContentIs(MainContent::update));
}

TEST_F(HelperLifeTest, AVersionInTheSameCaseIsTheSameVersion) {
  installHelper();
  planVersions("0.1.0b", "0.1.0b");
  startApp();
  EXPECT_TRUE(runUntilContentIs(MainContent::live));
}

TEST_F(HelperLifeTest, TheInterruptionByARemovedHelperClearsTheGraphs) {
  installAndSample();
  int clears = 0;
  const auto clear =
      notifications().observe(base::notification::kClearData, [&clears] { ++clears; });
  requestRemoval();
  EXPECT_EQ(clears, 0);
  EXPECT_TRUE(runUntil([&clears] { return clears == 1; }));
  EXPECT_FALSE(manager().isRequestedToUninstall());
  EXPECT_FALSE(manager().isAuthorized());
}

TEST_F(HelperLifeTest, ARemovedHelperCanBeInstalledAgain) {
  installAndSample();
  requestRemoval();
  ASSERT_TRUE(runUntilContentIs(MainContent::install));
  press();
  ASSERT_TRUE(runUntilContentIs(MainContent::live));
  EXPECT_TRUE(runUntilRows(rows() + 3));
}

TEST_F(HelperLifeTest, AnOlderHelperIsReplacedByTheEmbeddedOne) {
  installHelper(kOlderHelper);
  startApp();
  ASSERT_TRUE(runUntilContentIs(MainContent::update));
  const Process older = helper();
  press();
  EXPECT_TRUE(view().hideUpdateButton());
  ASSERT_TRUE(runUntilUpdated());
  EXPECT_TRUE(runUntilRows(3));
  EXPECT_TRUE(older.ends());
  EXPECT_EQ(contents(folder.installedHelper()), contents(kEmbeddedHelper));
}

TEST_F(HelperLifeTest, AfterAnUpdateTheNextStartFindsTheRightVersion) {
  installHelper(kOlderHelper);
  startApp();
  ASSERT_TRUE(runUntilContentIs(MainContent::update));
  press();
  ASSERT_TRUE(runUntilUpdated());
  // The installation's own probe has let go of its connection by then, which would have taken a
  // question along.
  ASSERT_TRUE(runUntilRows(3));
  bool isSame = false;
  bool isAnswered = false;
  manager().client().checkVersion(
      [&](bool isSameVersion) {
        queue().async([&, isSameVersion] {
          isSame = isSameVersion;
          isAnswered = true;
        });
      },
      std::weak_ptr<helper_link::XPCManager>());
  EXPECT_TRUE(runUntil([&isAnswered] { return isAnswered; }));
  EXPECT_TRUE(isSame);
}

TEST_F(HelperLifeTest, AHelperThatWasKilledIsInstalledAgain) {
  installAndSample();
  const Process first = helper();
  first.send(SIGKILL);
  ASSERT_TRUE(runUntilContentIs(MainContent::install));
  press();
  ASSERT_TRUE(runUntilContentIs(MainContent::live));
  EXPECT_TRUE(runUntilRows(rows() + 3));
  EXPECT_NE(helper().number(), first.number());
}

/// Installs, probes and removes the helper with the app's own client, round after round.
class RoundsTest : public LinkTest {
 protected:
  /// What must not grow.
  struct Usage {
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;
    std::ptrdiff_t files = 0;
  };

  RoundsTest() {
    didInstall_ =
        notices_.observe(base::notification::kXPCDidInstall, [this] { note(installed_); });
    wasLost_ = notices_.observe(base::notification::kXPCInstallError, [this] { note(lost_); });
  }

  ~RoundsTest() override {
    link.reset();
    delivery.reset();
  }

  void round() {
    ASSERT_TRUE(installation_.bless(helper_link::protocol::kMachServiceName, *token_));
    client_->isResponding();
    ASSERT_TRUE(waitFor(installed_)) << "the installed helper did not answer";
    // The probe announces the helper first and drops its connection then.
    std::promise<void> dropped;
    delivery->post([&dropped] { dropped.set_value(); });
    dropped.get_future().wait();
    client_->uninstall(nullptr);
    ASSERT_TRUE(waitFor(lost_)) << "the helper did not end";
    ASSERT_FALSE(fs::exists(folder.installedHelper()));
    ++rounds_;
  }

  Usage usage() const {
    const fs::recursive_directory_iterator files(folder.path());
    return {entriesOf("/proc/self/fd"), entriesOf("/proc/self/task"), std::distance(files, {})};
  }
  /// The link lets go of an ended connection on a thread of its own.
  bool growsToAtMost(const Usage& limit) const {
    return waitUntil([&] {
      const Usage now = usage();
      return now.descriptors <= limit.descriptors && now.threads <= limit.threads &&
             now.files <= limit.files;
    });
  }

  /// Waits for the helpers that have become ours; how many processes there were, all ended.
  static int endedProcesses() {
    int ended = 0;
    EXPECT_TRUE(waitUntil([&ended] {
      pid_t waited = 0;
      while ((waited = waitpid(-1, nullptr, WNOHANG)) > 0) ++ended;
      return waited < 0 && errno == ECHILD;
    }));
    return ended;
  }

  int rounds() const { return rounds_; }

 private:
  static std::ptrdiff_t entriesOf(const fs::path& path) {
    return std::distance(fs::directory_iterator(path), {});
  }
  /// Looks every few milliseconds, so that those who work have the processor.
  static bool waitUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (!holds()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      poll(nullptr, 0, 5);
    }
    return true;
  }
  void note(int& count) {
    const std::lock_guard lock(mutex_);
    ++count;
    changed_.notify_all();
  }
  bool waitFor(const int& count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kDeadline, [&] { return count > rounds_; });
  }

  base::NotificationCentre notices_;
  fakes::RecordingConsole console_;
  fakes::RecordingSystemLog systemLog_;
  adapters::libplist::LibplistReader propertyLists_;
  adapters::linux::BuiltBundle bundle_{PALLIMO_BIN_DIR, propertyLists_};
  adapters::linux::UserAuthorization authorization_;
  const std::shared_ptr<ports::AuthorizationToken> token_ =
      authorization_.createAuthorization().token;
  adapters::linux::HelperInstallation installation_{kEmbeddedHelper, folder, systemLog_};
  const std::shared_ptr<helper_link::XPCClient> client_ =
      helper_link::XPCClient::create({connector, bundle_, notices_, systemLog_, console_});

  std::mutex mutex_;
  std::condition_variable changed_;
  int installed_ = 0;
  int lost_ = 0;
  int rounds_ = 0;
  base::Subscription didInstall_;
  base::Subscription wasLost_;
};

TEST_F(RoundsTest, AThousandInstallationsAndRemovalsLeaveNothingBehind) {
  constexpr int kRounds = kIsSanitized ? 100 : 1000;  // ten times as slow there
  ASSERT_NO_FATAL_FAILURE(round());
  const Usage before = usage();
  while (rounds() < kRounds) ASSERT_NO_FATAL_FAILURE(round()) << "round " << rounds();
  EXPECT_TRUE(growsToAtMost(before));
  EXPECT_GE(endedProcesses(), kRounds);  // a launch may have been tried again
}

}  // namespace
}  // namespace pallimo::end_to_end
