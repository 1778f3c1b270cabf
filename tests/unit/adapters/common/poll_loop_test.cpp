// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/poll_loop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

namespace pallimo::adapters::common {
namespace {

using namespace std::chrono_literals;

/// A pipe with a byte in it whenever the test wants one.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK), 0); }
  ~Pipe() {
    close(reader());
    closeWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void put() { EXPECT_EQ(write(ends_[1], "x", 1), 1); }
  void take() {
    char byte = 0;
    EXPECT_EQ(read(ends_[0], &byte, 1), 1);
  }
  void closeWriter() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

 private:
  std::array<int, 2> ends_{};
};

class PollLoopTest : public ::testing::Test {
 protected:
  /// Runs the loop until somebody stops it.
  void run() {
    const auto deadline = loop.every(60s, [this] {
      ADD_FAILURE() << "the loop was not stopped";
      loop.stop();
    });
    loop.run();
  }
  /// Runs what is queued.
  void runQueued() {
    loop.stop();
    run();
  }
  std::function<void()> note(const std::string& text) {
    return [this, text] { notes += text; };
  }

  PollLoop loop;
  std::string notes;
};

TEST_F(PollLoopTest, RunsTasksInTheirOrder) {
  loop.async(note("a"));
  loop.async(note("b"));
  loop.async(note("c"));
  runQueued();
  EXPECT_EQ(notes, "abc");
}

TEST_F(PollLoopTest, RunsATaskThatATaskQueued) {
  loop.async([this] {
    loop.async([this] {
      notes += "b";
      loop.stop();
    });
    notes += "a";
  });
  run();
  EXPECT_EQ(notes, "ab");
}

TEST_F(PollLoopTest, RunsTasksThatWereQueuedBeforeStop) {
  loop.async([this] {
    loop.async(note("b"));
    loop.stop();
    notes += "a";
  });
  run();
  EXPECT_EQ(notes, "ab");
}

TEST_F(PollLoopTest, KeepsTasksThatWereQueuedAfterStopForTheNextRun) {
  loop.async([this] {
    loop.stop();
    loop.async(note("a"));
  });
  run();
  EXPECT_EQ(notes, "");
  runQueued();
  EXPECT_EQ(notes, "a");
}

TEST_F(PollLoopTest, ReturnsAtOnceWhenItWasStoppedBefore) {
  loop.stop();
  run();
}

TEST_F(PollLoopTest, WakesForATaskOfAnotherThread) {
  std::thread other([this] { loop.async([this] { loop.stop(); }); });
  run();
  other.join();
}

TEST_F(PollLoopTest, WakesForTheDelayOfAnotherThread) {
  std::thread other([this] { loop.after(1ms, [this] { loop.stop(); }); });
  run();
  other.join();
}

TEST_F(PollLoopTest, IsStoppedByAnotherThread) {
  std::thread other([this] { loop.stop(); });
  run();
  other.join();
}

TEST_F(PollLoopTest, KeepsTheOrderOfEachThread) {
  constexpr int kThreads = 4;
  constexpr int kTasks = 1000;
  std::array<int, kThreads> next{};
  int misplaced = 0;
  int left = kThreads * kTasks;
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int task = 0; task < kTasks; ++task) {
        loop.async([&, thread, task] {
          if (next[thread]++ != task) ++misplaced;
          if (--left == 0) loop.stop();
        });
      }
    });
  }
  run();
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(misplaced, 0);
}

TEST_F(PollLoopTest, RunsDelayedTasksInTheOrderOfTheirTime) {
  loop.after(20ms, [this] {
    notes += "c";
    loop.stop();
  });
  loop.after(1ms, note("a"));
  loop.after(10ms, note("b"));
  run();
  EXPECT_EQ(notes, "abc");
}

TEST_F(PollLoopTest, RunsDelayedTasksOfOneTimeInTheirOrder) {
  loop.after(0ms, note("a"));
  loop.after(0ms, note("b"));
  loop.after(1ms, [this] { loop.stop(); });
  run();
  EXPECT_EQ(notes, "ab");
}

TEST_F(PollLoopTest, RunsNoDelayedTaskTooEarly) {
  const auto start = std::chrono::steady_clock::now();
  loop.after(30ms, [this] { loop.stop(); });
  run();
  EXPECT_GE(std::chrono::steady_clock::now() - start, 30ms);
}

TEST_F(PollLoopTest, SleepsWithoutWakingWhileNothingIsDue) {
  rusage before{};
  getrusage(RUSAGE_THREAD, &before);
  loop.after(100ms, [this] { loop.stop(); });
  run();
  rusage after{};
  getrusage(RUSAGE_THREAD, &after);
  EXPECT_LT(after.ru_nvcsw - before.ru_nvcsw, 10);
}

TEST_F(PollLoopTest, RepeatsATimer) {
  int ticks = 0;
  const auto timer = loop.every(1ms, [&] {
    if (++ticks == 3) loop.stop();
  });
  run();
  EXPECT_EQ(ticks, 3);
}

TEST_F(PollLoopTest, FiresATimerOneIntervalFromNowFirst) {
  const auto timer = loop.every(1ms, note("t"));
  runQueued();
  EXPECT_EQ(notes, "");
}

TEST_F(PollLoopTest, EndsATimerThatIsDestroyed) {
  auto timer = loop.every(1ms, note("t"));
  timer.reset();
  loop.after(5ms, [this] { loop.stop(); });
  run();
  EXPECT_EQ(notes, "");
}

TEST_F(PollLoopTest, EndsATimerThatIsDestroyedWithinItself) {
  std::unique_ptr<ports::RepeatingTimer> timer;
  const auto text = std::make_shared<std::string>("t");
  timer = loop.every(1ms, [this, &timer, text] {
    timer.reset();
    notes += *text;
  });
  loop.after(10ms, [this] { loop.stop(); });
  run();
  EXPECT_EQ(notes, "t");
}

TEST_F(PollLoopTest, MakesUpForNoTickThatItMissed) {
  int ticks = 0;
  const auto timer = loop.every(2ms, [&] { ++ticks; });
  const auto busyUntil = std::chrono::steady_clock::now() + 40ms;
  loop.async([&] {
    while (std::chrono::steady_clock::now() < busyUntil) {
    }
    loop.async([&] { loop.async([this] { loop.stop(); }); });
  });
  run();
  EXPECT_LE(ticks, 2);
}

TEST_F(PollLoopTest, CallsTheHandlerOfADescriptorThatIsReady) {
  Pipe pipe;
  short seen = 0;
  const auto watch = loop.watch(pipe.reader(), POLLIN, [&](short events) {
    seen = events;
    loop.stop();
  });
  pipe.put();
  run();
  EXPECT_EQ(seen, POLLIN);
}

TEST_F(PollLoopTest, CallsAgainWhileADescriptorIsReady) {
  Pipe pipe;
  int calls = 0;
  const auto watch = loop.watch(pipe.reader(), POLLIN, [&](short) {
    if (++calls == 3) loop.stop();
  });
  pipe.put();
  run();
  EXPECT_EQ(calls, 3);
}

TEST_F(PollLoopTest, TellsThatADescriptorCanBeWritten) {
  Pipe pipe;
  short seen = 0;
  const auto watch = loop.watch(pipe.writer(), POLLOUT, [&](short events) {
    seen = events;
    loop.stop();
  });
  run();
  EXPECT_EQ(seen, POLLOUT);
}

TEST_F(PollLoopTest, WaitsOnlyForTheEventsThatWereSetLast) {
  Pipe pipe;
  pipe.put();
  const auto watch =
      loop.watch(pipe.reader(), POLLIN, [](short) { ADD_FAILURE() << "not wanted"; });
  watch->setEvents(0);
  loop.after(5ms, [this] { loop.stop(); });
  run();
}

TEST_F(PollLoopTest, ReportsAHangUpAlsoWhenNoEventIsWaitedFor) {
  Pipe pipe;
  short seen = 0;
  const auto watch = loop.watch(pipe.reader(), 0, [&](short events) {
    seen = events;
    loop.stop();
  });
  pipe.closeWriter();
  run();
  EXPECT_EQ(seen, POLLHUP);
}

TEST_F(PollLoopTest, EndsAWatchThatIsDestroyed) {
  Pipe pipe;
  pipe.put();
  auto watch = loop.watch(pipe.reader(), POLLIN, [](short) { ADD_FAILURE() << "not wanted"; });
  watch.reset();
  loop.after(5ms, [this] { loop.stop(); });
  run();
}

TEST_F(PollLoopTest, EndsAWatchThatIsDestroyedWithinItsHandler) {
  Pipe pipe;
  pipe.put();
  std::unique_ptr<PollLoop::Watch> watch;
  const auto text = std::make_shared<std::string>("h");
  watch = loop.watch(pipe.reader(), POLLIN, [this, &watch, text](short) {
    watch.reset();
    notes += *text;
  });
  loop.after(5ms, [this] { loop.stop(); });
  run();
  EXPECT_EQ(notes, "h");
}

TEST_F(PollLoopTest, PassesOverAWatchThatAnotherHandlerHasEnded) {
  Pipe first;
  Pipe second;
  first.put();
  second.put();
  std::unique_ptr<PollLoop::Watch> firstWatch;
  std::unique_ptr<PollLoop::Watch> secondWatch;
  firstWatch = loop.watch(first.reader(), POLLIN, [&](short) {
    secondWatch.reset();
    loop.stop();
  });
  secondWatch = loop.watch(second.reader(), POLLIN, [](short) { ADD_FAILURE() << "ended"; });
  run();
}

TEST_F(PollLoopTest, PassesOverEventsThatAnotherHandlerHasTakenAway) {
  Pipe first;
  Pipe second;
  first.put();
  second.put();
  std::unique_ptr<PollLoop::Watch> secondWatch;
  const auto firstWatch = loop.watch(first.reader(), POLLIN, [&](short) {
    first.take();
    secondWatch->setEvents(0);
    loop.after(1ms, [this] { loop.stop(); });
  });
  secondWatch = loop.watch(second.reader(), POLLIN, [](short) { ADD_FAILURE() << "taken away"; });
  run();
}

TEST_F(PollLoopTest, CallsNoHandlerAfterTheOneThatStoppedIt) {
  Pipe first;
  Pipe second;
  first.put();
  second.put();
  const auto handler = [this](short) {
    notes += "h";
    loop.stop();
  };
  const auto firstWatch = loop.watch(first.reader(), POLLIN, handler);
  const auto secondWatch = loop.watch(second.reader(), POLLIN, handler);
  run();
  EXPECT_EQ(notes, "h");
}

TEST_F(PollLoopTest, LeavesDescriptorsTheirTurnWhileTasksQueueTasks) {
  Pipe pipe;
  pipe.put();
  std::function<void()> again = [&] { loop.async(again); };
  loop.async(again);
  const auto watch = loop.watch(pipe.reader(), POLLIN, [this](short) { loop.stop(); });
  run();
}

TEST_F(PollLoopTest, LeavesWatchesAndTimersThatOutliveIt) {
  Pipe pipe;
  std::unique_ptr<PollLoop::Watch> watch;
  std::unique_ptr<ports::RepeatingTimer> timer;
  {
    PollLoop brief;
    watch = brief.watch(pipe.reader(), POLLIN, [](short) {});
    timer = brief.every(1ms, [] {});
  }
  watch->setEvents(POLLIN);
}

TEST_F(PollLoopTest, DestroysTasksThatWereNeverRun) {
  const auto held = std::make_shared<int>();
  {
    PollLoop brief;
    brief.async([held] { ADD_FAILURE(); });
    brief.after(1h, [held] { ADD_FAILURE(); });
  }
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace pallimo::adapters::common
