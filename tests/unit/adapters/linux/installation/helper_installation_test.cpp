// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_installation.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "fakes/recording_lines.h"
#include "unit/adapters/linux/installation/lock_holder.h"

namespace pallimo::adapters::linux {
namespace {

namespace fs = std::filesystem;

class HelperInstallationTest : public testing::Test {
 protected:
  HelperInstallationTest() {
    char pattern[] = "/tmp/pallimo-XXXXXX";
    root_ = mkdtemp(pattern);
    fs::create_directory(root_ / "state");
    build("the helper");
  }
  ~HelperInstallationTest() override { fs::remove_all(root_); }

  fs::path built() const { return root_ / "com.ostrovane.powermetrics"; }
  StateFolder state() const { return StateFolder(root_ / "state"); }
  fs::path installed() const { return state().installedHelper(); }
  fs::path folder() const { return installed().parent_path(); }
  void build(const std::string& bytes) const { std::ofstream(built(), std::ios::trunc) << bytes; }
  HelperInstallation installation() { return HelperInstallation(built(), state(), log_); }

  static std::string textOf(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
  }
  static unsigned modeOf(const fs::path& path) {
    struct stat status = {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  static ino_t fileNumber(const fs::path& path) {
    struct stat status = {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_ino;
  }
  std::vector<std::string> namesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder())) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  fs::path root_;
  fakes::RecordingSystemLog log_;
};

TEST_F(HelperInstallationTest, TheBuiltHelperIsCopiedAndMayBeExecuted) {
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(installed()), "the helper");
  EXPECT_EQ(modeOf(installed()), 0755u);
}

TEST_F(HelperInstallationTest, TheHelpersFolderIsClosedToOthers) {
  installation().install();
  EXPECT_EQ(modeOf(folder()), 0700u);
}

TEST_F(HelperInstallationTest, AFolderThatIsOpenToOthersIsClosed) {
  fs::create_directory(folder());
  fs::permissions(folder(), fs::perms::all);
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(modeOf(folder()), 0700u);
}

TEST_F(HelperInstallationTest, TheSameHelperIsLeftAlone) {
  installation().install();
  const ino_t before = fileNumber(installed());
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(fileNumber(installed()), before);
}

TEST_F(HelperInstallationTest, AnotherHelperOfTheSameSizeIsReplaced) {
  installation().install();
  build("new helper");
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(installed()), "new helper");
}

TEST_F(HelperInstallationTest, ALongerHelperIsReplaced) {
  installation().install();
  build("the helper, grown");
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(installed()), "the helper, grown");
}

TEST_F(HelperInstallationTest, AHelperThatSpansSeveralReadsIsCopiedWhole) {
  std::string large(200'001, 'x');
  large.back() = 'y';
  build(large);
  installation().install();
  EXPECT_EQ(textOf(installed()), large);
  large.back() = 'z';
  build(large);
  installation().install();
  EXPECT_EQ(textOf(installed()), large);
}

TEST_F(HelperInstallationTest, AHelperThatMayNotBeExecutedIsReplaced) {
  installation().install();
  fs::permissions(installed(), fs::perms::owner_read);
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(modeOf(installed()), 0755u);
}

TEST_F(HelperInstallationTest, TheFileIsReplacedAndNotRewritten) {
  installation().install();
  const std::ifstream running(installed());
  build("new helper");
  installation().install();
  std::ostringstream text;
  text << running.rdbuf();
  EXPECT_EQ(text.str(), "the helper");
}

TEST_F(HelperInstallationTest, NothingElseIsLeftInTheFolder) {
  installation().install();
  EXPECT_EQ(namesInFolder(), std::vector<std::string>{"com.ostrovane.powermetrics"});
}

TEST_F(HelperInstallationTest, ALinkInTheHelpersPlaceIsReplacedAndItsTargetUntouched) {
  std::ofstream(root_ / "precious") << "precious";
  fs::create_directory(folder());
  fs::create_symlink(root_ / "precious", installed());
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(root_ / "precious"), "precious");
  EXPECT_FALSE(fs::is_symlink(installed()));
  EXPECT_EQ(textOf(installed()), "the helper");
}

TEST_F(HelperInstallationTest, ALinkInTheFoldersPlaceIsRefused) {
  fs::create_directory(root_ / "elsewhere");
  fs::create_directory_symlink(root_ / "elsewhere", folder());
  EXPECT_EQ(installation().install(),
            "can't open the helper's folder \"" + folder().string() + "\": Not a directory");
  EXPECT_TRUE(fs::is_empty(root_ / "elsewhere"));
}

TEST_F(HelperInstallationTest, AFolderInTheHelpersPlaceIsRefused) {
  fs::create_directories(installed());
  EXPECT_EQ(installation().install(),
            "can't install the helper \"" + installed().string() + "\": Is a directory");
  EXPECT_EQ(namesInFolder(), std::vector<std::string>{"com.ostrovane.powermetrics"});
}

TEST_F(HelperInstallationTest, AMissingBuildIsSaidAndTheInstalledHelperStays) {
  installation().install();
  fs::remove(built());
  EXPECT_EQ(installation().install(), "can't read the helper that was built \"" + built().string() +
                                          "\": No such file or directory");
  EXPECT_EQ(textOf(installed()), "the helper");
}

using link_test::LockHolder;

TEST_F(HelperInstallationTest, AHelperThatListensWhileItsFileIsReplacedIsEnded) {
  installation().install();
  LockHolder running(state().helperLock());
  build("new helper");
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(running.endedBy(), SIGKILL);
}

TEST_F(HelperInstallationTest, AHelperThatHangsIsEndedToo) {
  LockHolder running(state().helperLock(), LockHolder::Signals::isStopped);
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(running.endedBy(), SIGKILL);
}

TEST_F(HelperInstallationTest, AHelperOfTheSameFileIsEndedToo) {
  installation().install();
  LockHolder running(state().helperLock());
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(running.endedBy(), SIGKILL);
}

TEST_F(HelperInstallationTest, AHungHelperOfTheSameFileIsEndedToo) {
  installation().install();
  LockHolder running(state().helperLock(), LockHolder::Signals::isStopped);
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(running.endedBy(), SIGKILL);
}

TEST_F(HelperInstallationTest, AHelperThatCanNotBeEndedFailsTheNextInstallationToo) {
  fs::create_symlink(root_ / "elsewhere", state().helperLock());
  EXPECT_NE(installation().install(), std::nullopt);
  EXPECT_EQ(installation().install(),
            "can't end the helper that runs for \"" + state().path() + "\"");
}

TEST_F(HelperInstallationTest, AHelperThatRemovesItselfLeavesAnInstalledOne) {
  for (int round = 0; round < 20; ++round) {
    installation().install();
    const LockHolder running(state().helperLock(), LockHolder::Signals::asUsual, installed());
    EXPECT_EQ(installation().install(), std::nullopt);
    EXPECT_EQ(textOf(installed()), "the helper");
  }
}

fs::path temporaryFileIn(const fs::path& folder) {
  return folder / ".com.ostrovane.powermetrics.new";
}

TEST_F(HelperInstallationTest, WhatAKilledInstallationLeftIsRemoved) {
  fs::create_directory(folder());
  std::ofstream(temporaryFileIn(folder())) << "half a hel";
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(installed()), "the helper");
  EXPECT_EQ(namesInFolder(), std::vector<std::string>{"com.ostrovane.powermetrics"});
}

TEST_F(HelperInstallationTest, WhatAKilledInstallationLeftIsRemovedFromBesideTheSameHelper) {
  installation().install();
  std::ofstream(temporaryFileIn(folder())) << "half a hel";
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(namesInFolder(), std::vector<std::string>{"com.ostrovane.powermetrics"});
}

TEST_F(HelperInstallationTest, ALinkUnderTheTemporaryNameIsNotWrittenThrough) {
  std::ofstream(root_ / "precious") << "precious";
  fs::create_directory(folder());
  fs::create_symlink(root_ / "precious", temporaryFileIn(folder()));
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(root_ / "precious"), "precious");
  EXPECT_EQ(textOf(installed()), "the helper");
}

TEST_F(HelperInstallationTest, OfTwoInstallationsAtOnceOneIsRefused) {
  installation().install();
  build("new helper");
  std::ofstream(temporaryFileIn(folder())) << "new h";
  const int other = open(folder().c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_EQ(installation().install(), "can't lock the helper's folder \"" + folder().string() +
                                          "\": Resource temporarily unavailable");
  EXPECT_EQ(textOf(temporaryFileIn(folder())), "new h");
  EXPECT_EQ(textOf(installed()), "the helper");
  close(other);
  EXPECT_EQ(installation().install(), std::nullopt);
  EXPECT_EQ(textOf(installed()), "new helper");
}

TEST_F(HelperInstallationTest, AHelperGoesOnWhenTheInstallationFails) {
  LockHolder running(state().helperLock());
  fs::create_directories(installed());
  EXPECT_NE(installation().install(), std::nullopt);
  EXPECT_EQ(running.endedBy(), 0);
}

TEST_F(HelperInstallationTest, WhenTheListeningHelperCanNotBeFoundOutItIsSaid) {
  fs::create_symlink(root_ / "elsewhere", state().helperLock());
  EXPECT_EQ(installation().install(),
            "can't end the helper that runs for \"" + state().path() + "\"");
}

TEST_F(HelperInstallationTest, NothingElseInTheStateFolderIsTouched) {
  for (const auto& file :
       {state().settingsFile(), state().simulationFile(), state().helperLock()}) {
    std::ofstream(file) << "precious";
  }
  std::ofstream(state().path() + "/other") << "precious";
  installation().install();
  for (const auto& file : {state().settingsFile(), state().simulationFile(), state().helperLock(),
                           state().path() + "/other"}) {
    EXPECT_EQ(textOf(file), "precious");
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(state().path()), {}), 5);
}

class Token final : public ports::AuthorizationToken {};

TEST_F(HelperInstallationTest, BlessingInstalls) {
  EXPECT_TRUE(installation().bless("com.ostrovane.powermetrics", Token()));
  EXPECT_EQ(textOf(installed()), "the helper");
  EXPECT_EQ(log_.lines(), std::vector<std::string>());
}

TEST_F(HelperInstallationTest, BlessingAgainInstallsAfterARemoval) {
  HelperInstallation installer = installation();
  EXPECT_TRUE(installer.bless("com.ostrovane.powermetrics", Token()));
  fs::remove(installed());
  EXPECT_TRUE(installer.bless("com.ostrovane.powermetrics", Token()));
  EXPECT_EQ(textOf(installed()), "the helper");
}

TEST_F(HelperInstallationTest, BlessingAnotherLabelIsRefused) {
  EXPECT_FALSE(installation().bless("com.example.other", Token()));
  EXPECT_FALSE(fs::exists(installed()));
}

TEST_F(HelperInstallationTest, ABlessingThatFailsSaysWhyInTheSystemLog) {
  fs::create_directories(installed());
  EXPECT_FALSE(installation().bless("com.ostrovane.powermetrics", Token()));
  EXPECT_EQ(log_.lines(), std::vector<std::string>{"can't install the helper \"" +
                                                   installed().string() + "\": Is a directory"});
}

/// While it lives no file can grow beyond a few bytes: a disk that is full.
class FullDisk {
 public:
  FullDisk() {
    before_ = signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &limit_);
    const rlimit full = {4, limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &limit_);
    signal(SIGXFSZ, before_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit limit_ = {};
  void (*before_)(int) = SIG_DFL;
};

TEST_F(HelperInstallationTest, AFullDiskRefusesInOneLineAndLeavesNothing) {
  bool isBlessed = true;
  {
    const FullDisk full;
    isBlessed = installation().bless("com.ostrovane.powermetrics", Token());
  }
  EXPECT_FALSE(isBlessed);
  EXPECT_EQ(log_.lines(), std::vector<std::string>{"can't install the helper \"" +
                                                   installed().string() + "\": File too large"});
  EXPECT_EQ(namesInFolder(), std::vector<std::string>());
}

TEST_F(HelperInstallationTest, AFullDiskLeavesTheHelperThatWasInstalled) {
  installation().install();
  build("new helper");
  {
    const FullDisk full;
    EXPECT_FALSE(installation().bless("com.ostrovane.powermetrics", Token()));
  }
  EXPECT_EQ(textOf(installed()), "the helper");
  EXPECT_EQ(namesInFolder(), std::vector<std::string>{"com.ostrovane.powermetrics"});
}

/// Root may write everywhere, so while it lives we are somebody else.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const fs::path& home) {
    if (!wasRoot_) return;
    EXPECT_EQ(chown(home.c_str(), kNobody, kNobody), 0);
    for (const auto& entry : fs::recursive_directory_iterator(home)) {
      EXPECT_EQ(chown(entry.path().c_str(), kNobody, kNobody), 0);
    }
    EXPECT_EQ(seteuid(kNobody), 0);
  }
  ~OrdinaryUser() {
    if (!wasRoot_) return;
    EXPECT_EQ(seteuid(0), 0);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  const bool wasRoot_ = geteuid() == 0;
};

TEST_F(HelperInstallationTest, AReadOnlyStateFolderRefusesInOneLine) {
  const OrdinaryUser user(root_);
  fs::permissions(state().path(), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(installation().bless("com.ostrovane.powermetrics", Token()));
  EXPECT_EQ(log_.lines(), std::vector<std::string>{"can't make the helper's folder \"" +
                                                   folder().string() + "\": Permission denied"});
}

}  // namespace
}  // namespace pallimo::adapters::linux
