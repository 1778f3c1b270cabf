// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/posix_child_processes.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <list>
#include <utility>

#include "adapters/common/posix_process.h"

namespace pallimo::adapters::common {

namespace {

using End = ports::ChildOutcome::End;

/// A pipe's whole capacity, so that one reading empties it.
constexpr std::size_t kReadingBytes = std::size_t{64} << 10;

}  // namespace

/// Waits for programs that were killed.
class PosixChildProcesses::Undertaker {
 public:
  explicit Undertaker(PollLoop& loop) : loop_(loop) {}

  void take(PosixProcess process) {
    if (process.reap()) return;
    const auto entry = remains_.insert(remains_.end(), {std::move(process), nullptr});
    entry->watch = loop_.watch(entry->process.exitDescriptor(), POLLIN, [this, entry](short) {
      if (entry->process.reap()) remains_.erase(entry);
    });
  }

  void waitForAll() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (!remains_.empty()) {
      const auto left =
          std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) return;
      pollfd ended = {remains_.front().process.exitDescriptor(), POLLIN, 0};
      poll(&ended, 1, static_cast<int>(left.count()));
      if (remains_.front().process.reap()) remains_.pop_front();
    }
  }

 private:
  struct Remains {
    PosixProcess process;
    std::unique_ptr<PollLoop::Watch> watch;
  };

  PollLoop& loop_;
  std::list<Remains> remains_;
};

class PosixChildProcesses::Run final : public ports::ChildProcess,
                                       public std::enable_shared_from_this<Run> {
 public:
  Run(PollLoop& loop, std::shared_ptr<Undertaker> undertaker,
      std::function<void(ports::ChildOutcome)> finished)
      : loop_(loop), undertaker_(std::move(undertaker)), finished_(std::move(finished)) {}
  ~Run() override { endProcess(); }

  void start(const ports::ChildCommand& command) {
    auto started = PosixProcess::start(command);
    if (const int* error = std::get_if<int>(&started)) {
      reportLater({End::notStarted, *error, {}});
      return;
    }
    auto& running = std::get<PosixProcess::Started>(started);
    process_ = std::move(running.process);
    pipe_ = std::move(running.output);
    outputLimit_ = command.outputLimit;
    pipeWatch_ = loop_.watch(pipe_.get(), POLLIN, [this](short) { outputArrived(); });
    exitWatch_ = loop_.watch(process_->exitDescriptor(), POLLIN, [this](short) { didEnd(); });
    // A timer that is destroyed with the run, so that it never wakes the loop for nothing.
    timeLimit_ = loop_.every(command.timeLimit, [this] { endEarly(End::timedOut); });
  }

 private:
  enum class Reading { kSome, kNothingThere, kEnded, kTooMuch };

  void reportLater(ports::ChildOutcome outcome) {
    loop_.async([weak = weak_from_this(), outcome = std::move(outcome)]() mutable {
      if (const auto self = weak.lock()) self->report(std::move(outcome));
    });
  }

  /// Last call: `finished` may destroy the run.
  void report(ports::ChildOutcome outcome) {
    const auto finished = std::exchange(finished_, nullptr);
    finished(std::move(outcome));
  }

  Reading readOnce() {
    if (!pipe_) return Reading::kEnded;
    std::array<std::uint8_t, kReadingBytes> buffer;
    const ssize_t got = read(pipe_.get(), buffer.data(), buffer.size());
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return Reading::kNothingThere;
    if (got <= 0) {
      pipeWatch_.reset();
      pipe_.reset();
      return Reading::kEnded;
    }
    output_.insert(output_.end(), buffer.data(), buffer.data() + got);
    if (output_.size() <= outputLimit_) return Reading::kSome;
    output_.resize(outputLimit_);
    return Reading::kTooMuch;
  }

  void outputArrived() {
    if (readOnce() == Reading::kTooMuch) endEarly(End::tooMuchOutput);
  }

  /// What the program printed last may still be in the pipe. Somebody whom it has left behind may
  /// hold the pipe open, so its end is not waited for.
  void didEnd() {
    Reading reading = Reading::kSome;
    while (reading == Reading::kSome) reading = readOnce();
    if (reading == Reading::kTooMuch) return endEarly(End::tooMuchOutput);
    process_->killGroup();
    const auto status = process_->reap();
    if (!status) return;
    process_.reset();
    endProcess();
    const bool isSignalled = *status >= 0 && WIFSIGNALED(*status);
    const int code = *status < 0 ? *status : isSignalled ? WTERMSIG(*status) : WEXITSTATUS(*status);
    report({isSignalled ? End::signalled : End::exited, code, std::move(output_)});
  }

  void endEarly(End end) {
    endProcess();
    report({end, 0, std::move(output_)});
  }

  void endProcess() {
    pipeWatch_.reset();
    exitWatch_.reset();
    timeLimit_.reset();
    pipe_.reset();
    if (!process_) return;
    process_->killGroup();
    undertaker_->take(std::move(*process_));
    process_.reset();
  }

  PollLoop& loop_;
  const std::shared_ptr<Undertaker> undertaker_;
  std::function<void(ports::ChildOutcome)> finished_;
  std::optional<PosixProcess> process_;  // until it is reaped or handed over
  Descriptor pipe_;                      // until its end
  std::size_t outputLimit_ = 0;
  base::Bytes output_;
  std::unique_ptr<PollLoop::Watch> pipeWatch_;
  std::unique_ptr<PollLoop::Watch> exitWatch_;
  std::unique_ptr<ports::RepeatingTimer> timeLimit_;
};

PosixChildProcesses::PosixChildProcesses(PollLoop& loop)
    : loop_(loop), undertaker_(std::make_shared<Undertaker>(loop)) {}

PosixChildProcesses::~PosixChildProcesses() { undertaker_->waitForAll(); }

std::unique_ptr<ports::ChildProcess> PosixChildProcesses::start(
    const ports::ChildCommand& command, std::function<void(ports::ChildOutcome)> finished) {
  class Handle final : public ports::ChildProcess {
   public:
    explicit Handle(std::shared_ptr<Run> run) : run_(std::move(run)) {}

   private:
    const std::shared_ptr<Run> run_;
  };
  auto run = std::make_shared<Run>(loop_, undertaker_, std::move(finished));
  run->start(command);
  return std::make_unique<Handle>(std::move(run));
}

}  // namespace pallimo::adapters::common
