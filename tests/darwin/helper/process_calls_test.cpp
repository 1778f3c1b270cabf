// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/process_calls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>

#include "adapters/common/poll_loop.h"
#include "adapters/common/posix_child_processes.h"
#include "darwin/helper/fake_process_calls.h"

namespace pallimo::adapters::common {
namespace {

using darwin::fakeProcessCalls;

/// A child that waits for its end.
class Child {
 public:
  Child() : number_(fork()) {
    while (number_ == 0) pause();
  }
  ~Child() {
    kill(number_, SIGKILL);
    waitpid(number_, nullptr, 0);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t number() const { return number_; }
  void end() {
    kill(number_, SIGKILL);
    siginfo_t ended = {};
    waitid(P_PID, static_cast<id_t>(number_), &ended, WEXITED | WNOWAIT);
  }

 private:
  const pid_t number_;
};

short eventsOf(const Descriptor& descriptor) {
  pollfd polled = {descriptor.get(), POLLIN, 0};
  poll(&polled, 1, 0);
  return polled.revents;
}

TEST(MacProcessCalls, APipeIsClosedInPrograms) {
  Descriptor reader;
  Descriptor writer;
  ASSERT_EQ(makePipe(reader, writer), 0);
  EXPECT_EQ(fcntl(reader.get(), F_GETFD), FD_CLOEXEC);
  EXPECT_EQ(fcntl(writer.get(), F_GETFD), FD_CLOEXEC);
}

TEST(MacProcessCalls, TheEndOfAChildMakesItsDescriptorReadable) {
  Child child;
  Descriptor exit;
  ASSERT_EQ(openExitDescriptor(child.number(), exit), 0);
  EXPECT_EQ(eventsOf(exit), 0);
  child.end();
  EXPECT_EQ(eventsOf(exit), POLLIN);
}

TEST(MacProcessCalls, AChildThatHasEndedAlreadyIsReadableAtOnceAndForGood) {
  Child child;
  child.end();
  Descriptor exit;
  fakeProcessCalls().keventError = ESRCH;  // as a Mac says of a zombie
  ASSERT_EQ(openExitDescriptor(child.number(), exit), 0);
  EXPECT_NE(eventsOf(exit) & (POLLIN | POLLHUP), 0);
  EXPECT_NE(eventsOf(exit) & (POLLIN | POLLHUP), 0);
}

TEST(MacProcessCalls, OtherErrorsAreReported) {
  Child child;
  Descriptor exit;
  fakeProcessCalls().keventError = ENOMEM;
  EXPECT_EQ(openExitDescriptor(child.number(), exit), ENOMEM);
  fakeProcessCalls().kqueueError = EMFILE;
  EXPECT_EQ(openExitDescriptor(child.number(), exit), EMFILE);
}

TEST(MacProcessCalls, AProgramIsSpawnedWithNothingButTheStandardThree) {
  PollLoop loop;
  PosixChildProcesses children(loop);
  ports::ChildOutcome outcome;
  const auto child = children.start({"/bin/echo", {"x"}, {}, 100, std::chrono::seconds(60)},
                                    [&](ports::ChildOutcome end) {
                                      outcome = std::move(end);
                                      loop.stop();
                                    });
  loop.run();
  EXPECT_EQ(outcome.output, (base::Bytes{'x', '\n'}));
  EXPECT_EQ(fakeProcessCalls().flags, POSIX_SPAWN_CLOEXEC_DEFAULT | POSIX_SPAWN_SETPGROUP |
                                          POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

TEST(MacProcessCalls, AProgramWhoseEndCanNotBeNoticedDoesNotRun) {
  PollLoop loop;
  PosixChildProcesses children(loop);
  ports::ChildOutcome outcome;
  fakeProcessCalls().keventError = ENOMEM;
  const auto child = children.start({"/bin/sleep", {"1000"}, {}, 100, std::chrono::seconds(2000)},
                                    [&](ports::ChildOutcome end) {
                                      outcome = std::move(end);
                                      loop.stop();
                                    });
  loop.run();
  EXPECT_EQ(outcome.end, ports::ChildOutcome::End::notStarted);
  EXPECT_EQ(outcome.code, ENOMEM);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(MacProcessCalls, AProgramThatEndsBeforeItIsWatchedIsNoticedAllTheSame) {
  PollLoop loop;
  PosixChildProcesses children(loop);
  ports::ChildOutcome outcome;
  fakeProcessCalls().keventError = ESRCH;
  const auto child =
      children.start({"/bin/sh", {"-c", "exit 7"}, {}, 100, std::chrono::seconds(60)},
                     [&](ports::ChildOutcome end) {
                       outcome = std::move(end);
                       loop.stop();
                     });
  loop.run();
  EXPECT_EQ(outcome.code, 7);
}

}  // namespace
}  // namespace pallimo::adapters::common
