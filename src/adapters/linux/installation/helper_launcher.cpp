// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_launcher.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace pallimo::adapters::linux {

namespace {

using SteadyClock = std::chrono::steady_clock;

// Descriptors in the helper, after the three standard streams.
constexpr int kReady = 3;
constexpr int kFailure = 4;  // closes at exec
constexpr int kFirstOther = 5;

/// One end of a pipe, above the numbers that the helper's own descriptors take.
class PipeEnd {
 public:
  PipeEnd() = default;
  explicit PipeEnd(int descriptor) : descriptor_(descriptor) {}
  ~PipeEnd() { reset(); }
  PipeEnd(PipeEnd&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  PipeEnd& operator=(PipeEnd&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  int get() const { return descriptor_; }
  void reset() {
    if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
  }

 private:
  int descriptor_ = -1;
};

struct Pipe {
  PipeEnd reader;
  PipeEnd writer;
  bool isOpen() const { return reader.get() >= 0 && writer.get() >= 0; }
};

Pipe makePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  const PipeEnd low(ends[1]);
  return {PipeEnd(ends[0]), PipeEnd(fcntl(ends[1], F_DUPFD_CLOEXEC, kFirstOther))};
}

/// Everything the child needs, made before the fork: afterwards only async-signal-safe calls.
struct Plan {
  const char* program;
  std::array<char*, 2> arguments;
  std::array<char*, 3> environment;
  int readyWriter;
  int failureWriter;
  int openLimit;
};

int openLimit() {
  constexpr rlim_t kMost = 65'536;
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return static_cast<int>(kMost);
  return static_cast<int>(std::min(limit.rlim_cur, kMost));
}

void closeOthers(int limit) {
  if (syscall(SYS_close_range, kFirstOther, ~0U, 0) == 0) return;
  for (int descriptor = kFirstOther; descriptor < limit; ++descriptor) close(descriptor);
}

void resetSignals() {
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal) sigaction(signal, &action, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool arrangeDescriptors(const Plan& plan) {
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nothing < 0) return false;
  for (int stream = 0; stream < kReady; ++stream) {
    const bool isThere =
        nothing == stream ? fcntl(stream, F_SETFD, 0) == 0 : dup2(nothing, stream) == stream;
    if (!isThere) return false;
  }
  if (dup2(plan.readyWriter, kReady) != kReady) return false;
  if (dup3(plan.failureWriter, kFailure, O_CLOEXEC) != kFailure) return false;
  closeOthers(plan.openLimit);
  return true;
}

[[noreturn]] void becomeHelper(const Plan& plan) {
  constexpr int kCouldNotExecute = 127;
  setsid();
  resetSignals();
  umask(S_IRWXG | S_IRWXO);
  if (chdir("/") == 0 && arrangeDescriptors(plan)) {
    execve(plan.program, plan.arguments.data(), plan.environment.data());
    [[maybe_unused]] const auto written = write(kFailure, "!", 1);
  } else {
    [[maybe_unused]] const auto written = write(plan.failureWriter, "!", 1);
  }
  _exit(kCouldNotExecute);
}

/// The child between us and the helper ends at once, so that the helper is adopted by the system
/// and nobody has to wait for it.
bool forkTwice(const Plan& plan) {
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    const pid_t helper = fork();
    if (helper == 0) becomeHelper(plan);
    _exit(helper < 0 ? 1 : 0);
  }
  int status = 0;
  pid_t waited = -1;
  do {
    waited = waitpid(child, &status, 0);
  } while (waited < 0 && errno == EINTR);
  // A program that ignores SIGCHLD has no status to read: the ready pipe tells.
  return waited < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

/// Whether the pipe ended before `deadline` without a byte.
bool endsSilently(int reader, SteadyClock::time_point deadline) {
  for (;;) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
    if (left <= 0) return false;
    pollfd waiting = {reader, POLLIN, 0};
    const int ready = poll(&waiting, 1, static_cast<int>(left));
    if (ready < 0 && errno != EINTR) return false;
    if (ready <= 0) continue;
    char byte = 0;
    return read(reader, &byte, 1) == 0;
  }
}

}  // namespace

HelperLauncher::HelperLauncher(StateFolder folder, std::chrono::milliseconds limit)
    : program_(folder.installedHelper()), limit_(limit) {}

HelperStart HelperLauncher::operator()() const {
  if (access(program_.c_str(), X_OK) != 0) return HelperStart::kNotInstalled;
  Pipe ready = makePipe();
  Pipe failure = makePipe();
  if (!ready.isOpen() || !failure.isOpen()) return HelperStart::kFailed;
  std::string argument = program_;
  std::string path = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";
  std::string readyName = "PALLIMO_READY_FD=" + std::to_string(kReady);
  const Plan plan = {
      program_.c_str(),   {argument.data(), nullptr}, {path.data(), readyName.data(), nullptr},
      ready.writer.get(), failure.writer.get(),       openLimit()};
  const auto deadline = SteadyClock::now() + limit_;
  if (!forkTwice(plan)) return HelperStart::kFailed;
  ready.writer.reset();
  failure.writer.reset();
  const bool isReady =
      endsSilently(failure.reader.get(), deadline) && endsSilently(ready.reader.get(), deadline);
  return isReady ? HelperStart::kStarted : HelperStart::kFailed;
}

}  // namespace pallimo::adapters::linux
