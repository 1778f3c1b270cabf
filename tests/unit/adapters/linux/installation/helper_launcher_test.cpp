// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_launcher.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using namespace link_test;

class HelperLauncherTest : public ::testing::Test {
 protected:
  HelperLauncherTest() {
    std::filesystem::create_directory(folder_.path() + "/PrivilegedHelperTools");
  }
  ~HelperLauncherTest() override {
    const std::string pid = contentOf("pid");
    if (!pid.empty()) kill(std::stoi(pid), SIGKILL);
  }

  /// Installs a program; `$OUT` is a folder that the test can read.
  void install(const std::string& script, mode_t mode = 0755) {
    const std::string path = folder_.state().installedHelper();
    std::ofstream(path) << "#!/bin/sh\nOUT=" << folder_.path() << "\n" << script << "\n";
    chmod(path.c_str(), mode);
  }
  HelperStart launch(std::chrono::milliseconds limit = kDeadline) {
    return HelperLauncher(folder_.state(), limit)();
  }
  std::string contentOf(const std::string& name) {
    std::ostringstream content;
    content << std::ifstream(folder_.path() + "/" + name).rdbuf();
    return content.str();
  }

  TemporaryFolder folder_;
};

TEST_F(HelperLauncherTest, WithoutAProgramNothingIsInstalled) {
  EXPECT_EQ(launch(), HelperStart::kNotInstalled);
}

TEST_F(HelperLauncherTest, AProgramThatMayNotBeExecutedIsNotInstalled) {
  install("exit 0", 0644);
  EXPECT_EQ(launch(), HelperStart::kNotInstalled);
}

TEST_F(HelperLauncherTest, AProgramThatCanNotBeExecutedFails) {
  const std::string path = folder_.state().installedHelper();
  std::ofstream(path) << "#!/nonexistent/interpreter\n";
  chmod(path.c_str(), 0755);
  EXPECT_EQ(launch(), HelperStart::kFailed);
}

TEST_F(HelperLauncherTest, ReturnsWhenTheHelperClosesItsReadyDescriptor) {
  install(R"sh(echo $$ > $OUT/pid; exec 3>&-; exec sleep 1000)sh");
  EXPECT_EQ(launch(), HelperStart::kStarted);
  EXPECT_EQ(kill(std::stoi(contentOf("pid")), 0), 0) << "the helper lives on";
}

TEST_F(HelperLauncherTest, ReturnsWhenTheHelperEnds) {
  install("exit 7");
  EXPECT_EQ(launch(), HelperStart::kStarted);
}

TEST_F(HelperLauncherTest, AHelperThatIsNeverReadyFailsAfterTheLimit) {
  install(R"sh(echo $$ > $OUT/pid; exec sleep 1000)sh");
  EXPECT_EQ(launch(200ms), HelperStart::kFailed);
}

TEST_F(HelperLauncherTest, TheHelperGetsAPathAndItsReadyDescriptorAndNothingElse) {
  install(R"sh(tr '\0' '\n' < /proc/$$/environ > $OUT/environment)sh");
  setenv("PALLIMO_LAUNCHER_TEST", "secret", 1);
  ASSERT_EQ(launch(), HelperStart::kStarted);
  unsetenv("PALLIMO_LAUNCHER_TEST");
  EXPECT_EQ(contentOf("environment"), "PATH=/usr/bin:/bin:/usr/sbin:/sbin\nPALLIMO_READY_FD=3\n");
}

TEST_F(HelperLauncherTest, TheHelperIsNamedByItsPath) {
  install(R"sh(echo "$0 $#" > $OUT/arguments)sh");
  ASSERT_EQ(launch(), HelperStart::kStarted);
  EXPECT_EQ(contentOf("arguments"), folder_.state().installedHelper() + " 0\n");
}

TEST_F(HelperLauncherTest, TheHelperInheritsNoOtherDescriptor) {
  // The shell has one or two more of its own.
  install(R"sh(
    cd /proc/$$/fd
    for each in *; do echo "$each $(readlink $each)"; done > $OUT/open)sh");
  const int inherited = fcntl(STDERR_FILENO, F_DUPFD, 50);
  ASSERT_EQ(launch(), HelperStart::kStarted);
  close(inherited);
  std::istringstream lines(contentOf("open"));
  std::string number;
  std::string target;
  std::set<int> numbers;
  while (lines >> number && std::getline(lines, target)) {
    numbers.insert(std::stoi(number));
    if (number == "0" || number == "2") {
      EXPECT_EQ(target, " /dev/null");
    } else if (number == "3") {
      EXPECT_EQ(target.substr(0, 6), " pipe:");
    }
  }
  EXPECT_EQ(numbers.count(0) + numbers.count(1) + numbers.count(2) + numbers.count(3), 4u);
  EXPECT_EQ(numbers.count(inherited), 0u);
}

TEST_F(HelperLauncherTest, TheHelperLivesInASessionOfItsOwnInTheRootFolder) {
  install(R"sh(
    session=$(cut -d' ' -f6 /proc/$$/stat)
    echo $$ $session $(readlink /proc/$$/cwd) $(umask) > $OUT/self)sh");
  ASSERT_EQ(launch(), HelperStart::kStarted);
  std::istringstream self(contentOf("self"));
  std::string pid;
  std::string session;
  std::string cwd;
  std::string mask;
  self >> pid >> session >> cwd >> mask;
  EXPECT_EQ(pid, session);
  EXPECT_EQ(cwd, "/");
  EXPECT_EQ(mask, "0077");
}

TEST_F(HelperLauncherTest, TheHelperIgnoresAndBlocksNoSignal) {
  // The shell's own words alone: it blocks signals while it starts a program.
  install(R"sh(
    while read -r name value; do
      case $name in SigBlk: | SigIgn:) echo $name $value ;; esac
    done < /proc/$$/status > $OUT/signals)sh");
  struct sigaction before = {};
  struct sigaction ignore = {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &before);
  sigset_t usr1;
  sigset_t mask;
  sigemptyset(&usr1);
  sigaddset(&usr1, SIGUSR1);
  pthread_sigmask(SIG_BLOCK, &usr1, &mask);
  const auto started = launch();
  pthread_sigmask(SIG_SETMASK, &mask, nullptr);
  sigaction(SIGPIPE, &before, nullptr);
  ASSERT_EQ(started, HelperStart::kStarted);
  EXPECT_EQ(contentOf("signals"), "SigBlk: 0000000000000000\nSigIgn: 0000000000000000\n");
}

TEST_F(HelperLauncherTest, TheHelperIsNobodysZombie) {
  install("exit 0");
  ASSERT_EQ(launch(), HelperStart::kStarted);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(HelperLauncherTest, LeavesNoDescriptorOpen) {
  install("exit 0");
  const auto count = [] {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
  };
  const auto before = count();
  for (int round = 0; round < 5; ++round) launch();
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace pallimo::adapters::linux
