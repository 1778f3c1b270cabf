// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/posix_child_processes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace pallimo::adapters::common {
namespace {

using namespace std::chrono_literals;
using End = ports::ChildOutcome::End;
using Texts = std::vector<std::string>;

std::size_t openDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

bool hasChildren() {
  siginfo_t info{};
  return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

class PosixChildProcessesTest : public ::testing::Test {
 protected:
  static ports::ChildCommand command(const std::string& path, Texts arguments) {
    return {path, std::move(arguments), {"PATH=/usr/bin:/bin"}, 1 << 20, 60s};
  }
  static ports::ChildCommand shell(const std::string& script) {
    return command("/bin/sh", {"-c", script});
  }

  void start(const ports::ChildCommand& what) {
    child = children->start(what, [this](ports::ChildOutcome end) {
      ++finished;
      outcome = std::move(end);
      loop.stop();
    });
  }
  /// Runs the loop until somebody stops it.
  void run() {
    const auto deadline = loop.every(60s, [this] {
      ADD_FAILURE() << "the program did not end";
      loop.stop();
    });
    loop.run();
  }
  const ports::ChildOutcome& run(const ports::ChildCommand& what) {
    start(what);
    run();
    return outcome;
  }
  std::string output(const ports::ChildCommand& what) {
    run(what);
    EXPECT_EQ(outcome.end, End::exited);
    return {outcome.output.begin(), outcome.output.end()};
  }

  PollLoop loop;
  std::unique_ptr<PosixChildProcesses> children = std::make_unique<PosixChildProcesses>(loop);
  std::unique_ptr<ports::ChildProcess> child;
  ports::ChildOutcome outcome;
  int finished = 0;
};

TEST_F(PosixChildProcessesTest, GiveBackWhatAProgramPrints) {
  EXPECT_EQ(output(command("/bin/echo", {"one", "two"})), "one two\n");
  EXPECT_EQ(outcome.code, 0);
}

TEST_F(PosixChildProcessesTest, UseNoShell) {
  EXPECT_EQ(output(command("/bin/echo", {"$HOME `id`; *"})), "$HOME `id`; *\n");
}

TEST_F(PosixChildProcessesTest, GiveBackTheStatus) {
  run(shell("exit 3"));
  EXPECT_EQ(outcome.end, End::exited);
  EXPECT_EQ(outcome.code, 3);
}

TEST_F(PosixChildProcessesTest, GiveBackTheSignal) {
  run(shell("kill -9 $$"));
  EXPECT_EQ(outcome.end, End::signalled);
  EXPECT_EQ(outcome.code, 9);
}

TEST_F(PosixChildProcessesTest, GiveBackMoreThanAPipeHolds) {
  const auto bytes = output(command("/usr/bin/head", {"-c", "1000000", "/dev/zero"}));
  EXPECT_EQ(bytes.size(), 1'000'000U);
}

TEST_F(PosixChildProcessesTest, DropWhatAProgramComplains) {
  EXPECT_EQ(output(shell("echo no >&2; echo yes")), "yes\n");
}

TEST_F(PosixChildProcessesTest, GiveAProgramNothingToRead) {
  EXPECT_EQ(output(command("/bin/cat", {})), "");
}

TEST_F(PosixChildProcessesTest, GiveAProgramItsEnvironmentAndNoOther) {
  auto what = command("/usr/bin/env", {});
  what.environment = {"PATH=/bin", "NAME=a value"};
  EXPECT_EQ(output(what), "PATH=/bin\nNAME=a value\n");
}

TEST_F(PosixChildProcessesTest, GiveAProgramNoOtherDescriptor) {
  const int inheritable = open("/dev/null", O_RDONLY);
  const int high = fcntl(inheritable, F_DUPFD, 50);
  const auto numbers = output(shell("cd /proc/$$/fd && echo *"));
  close(inheritable);
  close(high);
  EXPECT_EQ(numbers.substr(0, 5), "0 1 2");
  EXPECT_EQ(numbers.find("50"), std::string::npos);
  EXPECT_EQ(numbers.find(std::to_string(inheritable)), std::string::npos);
}

TEST_F(PosixChildProcessesTest, ConnectTheOtherStreamsToNowhere) {
  EXPECT_EQ(output(shell("readlink /proc/$$/fd/0 /proc/$$/fd/2")), "/dev/null\n/dev/null\n");
}

TEST_F(PosixChildProcessesTest, PutAProgramIntoAGroupOfItsOwn) {
  EXPECT_EQ(output(shell("read pid name state parent group rest < /proc/$$/stat;"
                         "[ $pid = $group ] && echo own")),
            "own\n");
}

TEST_F(PosixChildProcessesTest, HandNoSignalSettingsOn) {
  sigset_t blocked;
  sigset_t previous;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &previous);
  const auto oldAction = signal(SIGPIPE, SIG_IGN);
  const auto settings = output(command("/bin/grep", {"-E", "Sig(Blk|Ign)", "/proc/self/status"}));
  signal(SIGPIPE, oldAction);
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  // The C library keeps signals 32 and 33 to itself; programs can't see them.
  constexpr unsigned long kVisible = 0x7fffffff;
  const auto mask = [&settings](const std::string& name) {
    return std::stoul(settings.substr(settings.find(name) + name.size()), nullptr, 16) & kVisible;
  };
  EXPECT_EQ(mask("SigBlk:"), 0U);
  EXPECT_EQ(mask("SigIgn:"), 0U);
}

TEST_F(PosixChildProcessesTest, SayLaterThatAProgramIsMissing) {
  start(command("/nowhere/powermetrics", {}));
  EXPECT_EQ(finished, 0);
  run();
  EXPECT_EQ(outcome.end, End::notStarted);
  EXPECT_EQ(outcome.code, ENOENT);
}

TEST_F(PosixChildProcessesTest, SayThatAFileIsNoProgram) {
  run(command("/etc/passwd", {}));
  EXPECT_EQ(outcome.end, End::notStarted);
  EXPECT_EQ(outcome.code, EACCES);
}

TEST_F(PosixChildProcessesTest, SayNothingOfAMissingProgramThatWasDestroyed) {
  start(command("/nowhere/powermetrics", {}));
  child.reset();
  loop.stop();
  run();
  EXPECT_EQ(finished, 0);
}

TEST_F(PosixChildProcessesTest, AcceptAsMuchAsTheLimit) {
  auto what = command("/usr/bin/head", {"-c", "100000", "/dev/zero"});
  what.outputLimit = 100'000;
  EXPECT_EQ(output(what).size(), 100'000U);
}

TEST_F(PosixChildProcessesTest, EndAProgramThatPrintsMoreThanTheLimit) {
  auto what = command("/bin/cat", {"/dev/zero"});
  what.outputLimit = 100'000;
  run(what);
  EXPECT_EQ(outcome.end, End::tooMuchOutput);
  EXPECT_EQ(outcome.output.size(), 100'000U);
}

TEST_F(PosixChildProcessesTest, CountWhatIsInThePipeWhenAProgramEnds) {
  auto what = command("/bin/echo", {"abc"});
  what.outputLimit = 3;
  run(what);
  EXPECT_EQ(outcome.end, End::tooMuchOutput);
  EXPECT_EQ(outcome.output.size(), 3U);
}

TEST_F(PosixChildProcessesTest, EndAProgramThatTakesTooLong) {
  auto what = command("/bin/sleep", {"1000"});
  what.timeLimit = 10ms;
  run(what);
  EXPECT_EQ(outcome.end, End::timedOut);
  EXPECT_EQ(finished, 1);
}

TEST_F(PosixChildProcessesTest, RunSideBySide) {
  int left = 20;
  std::vector<std::unique_ptr<ports::ChildProcess>> all;
  for (int i = 0; i < 20; ++i) {
    all.push_back(children->start(command("/bin/echo", {"x"}), [&](ports::ChildOutcome end) {
      EXPECT_EQ(end.output.size(), 2U);
      if (--left == 0) loop.stop();
    }));
  }
  run();
  EXPECT_EQ(left, 0);
}

TEST_F(PosixChildProcessesTest, MayBeDestroyedWhenTheyFinish) {
  child = children->start(command("/bin/echo", {}), [this](ports::ChildOutcome) {
    child.reset();
    loop.stop();
  });
  run();
  EXPECT_FALSE(child);
}

TEST_F(PosixChildProcessesTest, LeaveNeitherDescriptorNorZombie) {
  const auto before = openDescriptors();
  for (int i = 0; i < 50; ++i) run(command("/bin/echo", {"x"}));
  for (int i = 0; i < 50; ++i) start(command("/bin/sleep", {"1000"}));
  for (int i = 0; i < 10; ++i) run(command("/nowhere", {}));
  child.reset();
  children.reset();
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(hasChildren());
}

TEST_F(PosixChildProcessesTest, WaitForAKilledProgramWithinTheLoop) {
  const auto before = openDescriptors();
  start(command("/bin/sleep", {"1000"}));
  child.reset();
  std::function<void()> look = [&] {
    if (openDescriptors() == before && !hasChildren()) return loop.stop();
    loop.after(1ms, look);
  };
  look();
  run();
}

/// Programs that tell the test what they do through a named pipe: its end is the end of all that
/// hold it.
class PosixChildProcessesWitnessTest : public PosixChildProcessesTest {
 protected:
  PosixChildProcessesWitnessTest() {
    std::string pattern = "/tmp/pallimo-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    fifo = folder_ + "/witness";
    EXPECT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    descriptor_ = open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    watch_ = loop.watch(descriptor_, POLLIN, [this](short) { arrived(); });
  }
  ~PosixChildProcessesWitnessTest() override {
    watch_.reset();
    close(descriptor_);
    std::filesystem::remove_all(folder_);
  }

  /// A shell that holds the witness; `script` may write to descriptor 3.
  ports::ChildCommand witnessed(const std::string& script) const {
    return shell("exec 3>" + fifo + "; " + script);
  }

  std::string fifo;
  std::function<void()> whenSaid;  // the program has said something
  std::string said;
  bool areAllGone = false;

 private:
  void arrived() {
    std::array<char, 100> text;
    const ssize_t count = read(descriptor_, text.data(), text.size());
    if (count > 0) {
      said.append(text.data(), static_cast<std::size_t>(count));
      if (whenSaid) whenSaid();
    } else if (count == 0) {
      areAllGone = true;
      watch_.reset();
      loop.stop();
    }
  }

  std::string folder_;
  int descriptor_ = -1;
  std::unique_ptr<PollLoop::Watch> watch_;
};

TEST_F(PosixChildProcessesWitnessTest, EndAProgramAndAllItStartedWhenDestroyed) {
  whenSaid = [this] { child.reset(); };
  start(witnessed("sleep 1000 & echo ready >&3; wait"));
  run();
  EXPECT_TRUE(areAllGone);
  EXPECT_EQ(finished, 0);
}

TEST_F(PosixChildProcessesWitnessTest, EndAProgramThatIgnoresRequestsToEnd) {
  whenSaid = [this] { child.reset(); };
  start(witnessed("trap '' TERM HUP INT; echo ready >&3; while :; do sleep 1000; done"));
  run();
  EXPECT_TRUE(areAllGone);
}

TEST_F(PosixChildProcessesWitnessTest, EndAllThatATooSlowProgramStarted) {
  auto what = witnessed("sleep 1000 & echo ready >&3; wait");
  // On a busy machine the program may be ended before it has begun.
  for (what.timeLimit = 100ms; said.empty() && !areAllGone; what.timeLimit *= 2) {
    finished = 0;
    start(what);
    while (finished == 0) run();
    EXPECT_EQ(outcome.end, End::timedOut);
  }
  if (!areAllGone) run();
  EXPECT_TRUE(areAllGone);
}

TEST_F(PosixChildProcessesWitnessTest, DoNotWaitForSomebodyWhoWasLeftBehind) {
  run(witnessed("sleep 1000 & echo done"));
  EXPECT_EQ(outcome.end, End::exited);
  EXPECT_EQ(std::string(outcome.output.begin(), outcome.output.end()), "done\n");
  if (!areAllGone) run();
  EXPECT_TRUE(areAllGone);
}

TEST_F(PosixChildProcessesWitnessTest, WaitForAProgramThatHasClosedItsOutput) {
  const std::string gate = fifo + ".gate";
  ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
  whenSaid = [&] { std::ofstream(gate) << "go\n"; };
  start(
      witnessed("echo a; exec >&-; echo closed >&3; exec 3>&-; read line < " + gate + "; exit 3"));
  while (finished == 0) run();
  EXPECT_EQ(outcome.end, End::exited);
  EXPECT_EQ(outcome.code, 3);
  EXPECT_EQ(std::string(outcome.output.begin(), outcome.output.end()), "a\n");
}

}  // namespace
}  // namespace pallimo::adapters::common
